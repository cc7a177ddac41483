// The loopback session: joining and leaving, the loopback peer that
// publishes as soon as the local user is in, local publishing, periodic
// network statistics and user volumes, groups and echo tests.
//
// Timeline of a join (delays from Config):
//   Joining -> [joinDelay] Joined, local FirstSend* for what is published
//   -> [peerDelay] peer: OnStreamAdd(audio), OnStreamAdd(video),
//      OnAudioEvent(FirstVoice), OnVideoEvent(FirstImage), OnVideoSizeFirst
//   then every statsInterval OnNetworkStats, every volumeInterval volumes.
// Leaving: peer OnStreamRemove(audio), OnStreamRemove(video) if it was up,
// then Leaved. Every timed task carries the session generation it was
// scheduled for and does nothing once a later join or leave replaced it.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>

#include "config.h"
#include "device_core.h"
#include "events.h"

namespace orva::loopback {

class SessionCore {
 public:
  SessionCore(Events& events, DeviceCore& device);

  // Settings applied at initialisation; a join's own settings override them
  // for that session.
  void configure(const Config& config);
  Config config();
  void setChannel(rtc::MediaChannel* channel) { channel_ = channel; }

  int join(const char* room, rtc::Settings* settings);
  void leave();
  // Leaves at once with the Leaved callback made before returning (waits for
  // the event thread); used when the engine shuts down.
  void leaveNow();
  int lastError();
  // Forgets the session, group, echo test and configuration, as if never
  // joined. Call only with the engine stopped: nothing is reported.
  void reset();

  void publishAudio();
  void unpublishAudio();
  void publishVideo();
  void unpublishVideo();
  void muteLocalAudio(bool mute);
  bool joined();

  int joinGroup(const char* group);
  void leaveGroup();

  void startEcho(rtc::EchoCheckType type);
  void stopEcho(rtc::EchoCheckType type);
  bool echoRunning();

  // The size local video is sent at (transcoding sets it).
  void setLocalVideoSize(int width, int height);

 private:
  void onJoined(uint64_t generation);
  void onPeerPublished(uint64_t generation);
  void statsTick(uint64_t generation, uint32_t tick);
  void volumeTick(uint64_t generation, uint32_t tick);
  // Raises the local send events for what is published but not yet sent.
  void startSending(std::unique_lock<std::mutex>& lock);
  // Peer removal and Leaved for the session that just ended.
  void raiseLeft(const std::string& room, const std::string& peer, bool peerUp);

  Events& events_;
  DeviceCore& device_;
  rtc::MediaChannel* channel_ = nullptr;  // set once at construction time

  // reset() puts every field below back to its initial value, except the
  // generations, which only ever grow; a field added here is added there.
  std::mutex mutex_;  // guards every field below
  Config base_;       // from initialisation
  Config config_;     // of the current session
  std::string room_;
  rtc::MediaSessionState state_ = rtc::Init;
  uint64_t generation_ = 0;
  int lastError_ = 0;
  bool audioPublished_ = false;
  bool videoPublished_ = false;
  bool audioSending_ = false;
  bool videoSending_ = false;
  bool localMuted_ = false;
  bool peerUp_ = false;
  int videoWidth_ = 1280;
  int videoHeight_ = 720;
  std::string group_;
  uint64_t echoGeneration_ = 0;
  bool echoRunning_ = false;
};

// What an echo test of `type` finds on the loopback machine (pure).
rtc::EchoCheckResult echoResultFor(rtc::EchoCheckType type);

}  // namespace orva::loopback
