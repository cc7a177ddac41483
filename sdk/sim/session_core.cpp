#include "session_core.h"

#include <chrono>
#include <vector>

#include "status.h"

namespace orva::loopback {

using std::chrono::milliseconds;

SessionCore::SessionCore(Events& events, DeviceCore& device) : events_(events), device_(device) {}

void SessionCore::configure(const Config& config) {
  std::lock_guard lock(mutex_);
  base_ = config_ = config;
}

Config SessionCore::config() {
  std::lock_guard lock(mutex_);
  return config_;
}

int SessionCore::join(const char* room, rtc::Settings* settings) {
  if (room == nullptr || *room == '\0') {
    std::lock_guard lock(mutex_);
    lastError_ = rtc::Join_Param_Error;
    return rtc::Join_Param_Error;
  }
  if (!events_.scheduler().running()) {  // not initialised: nothing could ever report
    std::lock_guard lock(mutex_);
    lastError_ = rtc::Session_E_Unknow;
    return rtc::Session_E_Unknow;
  }
  leave();  // a second join replaces the first session
  std::lock_guard lock(mutex_);
  config_ = applySettings(base_, settings);
  room_ = room;
  state_ = rtc::Joining;
  lastError_ = 0;
  const uint64_t generation = ++generation_;
  const std::string name = room_;
  events_.raise<rtc::MediaServiceListener>(
      [name](auto* l) { l->OnSessionStateChanged(name.c_str(), rtc::Joining, rtc::Init); });
  events_.later(milliseconds(config_.joinDelayMs), [this, generation] { onJoined(generation); });
  return rtc::Join_Successed;
}

void SessionCore::onJoined(uint64_t generation) {
  std::unique_lock lock(mutex_);
  if (generation != generation_) return;
  state_ = rtc::Joined;
  const std::string name = room_;
  events_.raise<rtc::MediaServiceListener>(
      [name](auto* l) { l->OnSessionStateChanged(name.c_str(), rtc::Joined, rtc::Init); });
  startSending(lock);
  events_.later(milliseconds(config_.peerDelayMs), [this, generation] { onPeerPublished(generation); });
  events_.later(milliseconds(config_.statsIntervalMs), [this, generation] { statsTick(generation, 1); });
  events_.later(milliseconds(config_.volumeIntervalMs), [this, generation] { volumeTick(generation, 1); });
}

void SessionCore::startSending(std::unique_lock<std::mutex>&) {
  if (state_ != rtc::Joined) return;
  const std::string local = config_.localUser;
  if (audioPublished_ && !audioSending_) {
    audioSending_ = true;
    events_.raise<rtc::MediaChannelListener>(
        [local](rtc::MediaChannelListener* l) { l->OnAudioEvent(local.c_str(), rtc::FirstSendVoice); });
  }
  if (videoPublished_ && !videoSending_) {
    videoSending_ = true;
    events_.raise<rtc::MediaChannelListener>(
        [local](rtc::MediaChannelListener* l) { l->OnVideoEvent(local.c_str(), rtc::FirstSendImage); });
  }
}

void SessionCore::onPeerPublished(uint64_t generation) {
  std::string peer;
  {
    std::lock_guard lock(mutex_);
    if (generation != generation_) return;
    peerUp_ = true;
    peer = config_.peerUser;
  }
  // Runs on the event thread already: call the listener in this task so the
  // five callbacks stay together.
  rtc::MediaChannel* channel = channel_;
  events_.registry().invoke<rtc::MediaChannelListener>([&](rtc::MediaChannelListener* l) {
    rtc::StringVector audioStreams;
    audioStreams.add("audio");
    rtc::StringVector videoStreams;
    videoStreams.add("video");
    l->OnStreamAdd(peer.c_str(), rtc::AudioStream, 0, audioStreams, channel);
    l->OnStreamAdd(peer.c_str(), rtc::VideoStream, 0, videoStreams, channel);
    l->OnAudioEvent(peer.c_str(), rtc::FirstVoice);
    l->OnVideoEvent(peer.c_str(), rtc::FirstImage);
    l->OnVideoSizeFirst(peer, 1280, 720);
  });
}

void SessionCore::statsTick(uint64_t generation, uint32_t tick) {
  rtc::NetworkStats stats;
  std::string peer;
  int interval = 0;
  {
    std::lock_guard lock(mutex_);
    if (generation != generation_) return;
    interval = config_.statsIntervalMs;
    peer = config_.peerUser;
    const int wobble = static_cast<int>(tick % 7);
    stats.OutBps = (audioSending_ ? 48000 : 0) + (videoSending_ ? 1200000 : 0);
    stats.InBps = peerUp_ ? 1248000 + wobble * 1000 : 0;
    stats.OutPps = stats.OutBps / 9600;
    stats.InPps = stats.InBps / 9600;
    stats.Status = stats.DownStatus = stats.UpStatus = rtc::Good;
    stats.RealtimeRtt = 20 + wobble;
    stats.CpuAppUsage = 3.5;
    stats.CpuSDKUsage = 1.5;
    stats.CpuTotalUsage = 12.0;
    stats.MemoryUsage = 35.0;
    if (videoSending_ || audioSending_) {
      rtc::OrvaLocalStatistics local;
      local.width = videoSending_ ? videoWidth_ : 0;
      local.height = videoSending_ ? videoHeight_ : 0;
      local.frameRate = videoSending_ ? 30 : 0;
      local.videoBitrate = videoSending_ ? 1200 : 0;
      local.audioSampleRate = 48000;
      local.audioBitrate = audioSending_ ? 48 : 0;
      local.audioCaptureState = audioSending_ ? 1 : 0;
      stats.localStatistics.push_back(local);
    }
    if (peerUp_) {
      rtc::OrvaRemoteStatistics remote;
      remote.width = 1280;
      remote.height = 720;
      remote.frameRate = 30;
      remote.videoBitrate = 1200;
      remote.audioSampleRate = 48000;
      remote.audioBitrate = 48;
      remote.jitterBufferDelay = 40;
      remote.point2PointDelay = 60 + wobble;
      stats.remoteStatistics.push_back(remote);
    }
  }
  // The ids point into `peer`, which outlives the call.
  for (auto& remote : stats.remoteStatistics) remote.userId = peer.c_str();
  events_.registry().invoke<rtc::MediaServiceListener>([&](auto* l) { l->OnNetworkStats(stats); });
  events_.later(milliseconds(interval), [this, generation, tick] { statsTick(generation, tick + 1); });
}

void SessionCore::volumeTick(uint64_t generation, uint32_t tick) {
  std::vector<rtc::VolumeInfo> volumes;
  int interval = 0;
  bool audioSending = false;
  bool muted = false;
  bool peerUp = false;
  {
    std::lock_guard lock(mutex_);
    if (generation != generation_) return;
    interval = config_.volumeIntervalMs;
    audioSending = audioSending_;
    muted = localMuted_;
    peerUp = peerUp_;
    volumes.push_back({config_.localUser, 0, 0});
    if (peerUp) volumes.push_back({config_.peerUser, 0, 0});
  }
  struct Levels {
    int mic, speaker;
    bool micTest, speakerTest;
  };
  const Levels levels = device_.with([](auto& s) {
    return Levels{s.micMute ? 0 : s.micVolume, s.speakerMute ? 0 : s.speakerVolume, s.micTest, s.speakerTest};
  });
  const int micVolume = levels.mic;
  const int speakerVolume = levels.speaker;
  const bool micTest = levels.micTest;
  const bool speakerTest = levels.speakerTest;
  // Speech-like levels: scaled by the device volume, varying tick by tick.
  const int wave = 40 + static_cast<int>((tick * 37) % 60);
  volumes[0].microphone_volume = audioSending && !muted ? micVolume * wave / 100 : 0;
  if (peerUp) volumes[1].speaker_volume = speakerVolume * (100 - wave / 2) / 100;
  int total = 0;
  for (const auto& v : volumes) total += v.microphone_volume + v.speaker_volume;
  const int count = static_cast<int>(volumes.size());
  auto& registry = events_.registry();
  registry.invoke<rtc::IMediaDeviceCallback>([&](auto* l) {
    l->onUserVoiceVolume(volumes, count, total);
    if (micTest) l->onTestMicVolume(micVolume * wave / 100);
    if (speakerTest) l->onTestSpeakerVolume(speakerVolume * wave / 100);
  });
  registry.invoke<rtc::MediaServiceListener>([&](auto* l) { l->OnUserVoiceVolume(volumes, count, total); });
  events_.later(milliseconds(interval), [this, generation, tick] { volumeTick(generation, tick + 1); });
}

void SessionCore::raiseLeft(const std::string& room, const std::string& peer, bool peerUp) {
  rtc::MediaChannel* channel = channel_;
  if (peerUp) {
    events_.raise<rtc::MediaChannelListener>([=](auto* l) {
      l->OnStreamRemove(peer.c_str(), rtc::AudioStream, 0, channel);
      l->OnStreamRemove(peer.c_str(), rtc::VideoStream, 0, channel);
    });
  }
  events_.raise<rtc::MediaServiceListener>(
      [room](auto* l) { l->OnSessionStateChanged(room.c_str(), rtc::Leaved, rtc::Init); });
}

void SessionCore::leave() {
  std::string room;
  std::string peer;
  bool peerUp = false;
  {
    std::lock_guard lock(mutex_);
    if (state_ != rtc::Joining && state_ != rtc::Joined) return;
    ++generation_;
    state_ = rtc::Leaved;
    room.swap(room_);
    peer = config_.peerUser;
    peerUp = peerUp_;
    peerUp_ = false;
    audioPublished_ = videoPublished_ = false;
    audioSending_ = videoSending_ = false;
  }
  raiseLeft(room, peer, peerUp);
}

void SessionCore::leaveNow() {
  leave();
  // Everything leave() posted runs before this task.
  events_.scheduler().runAndWait([] {});
}

int SessionCore::lastError() {
  std::lock_guard lock(mutex_);
  return lastError_;
}

void SessionCore::reset() {
  std::lock_guard lock(mutex_);
  base_ = config_ = Config{};
  room_.clear();
  state_ = rtc::Init;
  ++generation_;  // a task of the forgotten session, should one survive, stays stale
  lastError_ = 0;
  audioPublished_ = videoPublished_ = false;
  audioSending_ = videoSending_ = false;
  localMuted_ = false;
  peerUp_ = false;
  videoWidth_ = 1280;
  videoHeight_ = 720;
  group_.clear();
  ++echoGeneration_;
  echoRunning_ = false;
}

bool SessionCore::joined() {
  std::lock_guard lock(mutex_);
  return state_ == rtc::Joined;
}

void SessionCore::publishAudio() {
  std::unique_lock lock(mutex_);
  audioPublished_ = true;
  startSending(lock);
}

void SessionCore::publishVideo() {
  std::unique_lock lock(mutex_);
  videoPublished_ = true;
  startSending(lock);
}

void SessionCore::unpublishAudio() {
  std::lock_guard lock(mutex_);
  audioPublished_ = false;
  if (!audioSending_) return;
  audioSending_ = false;
  const std::string local = config_.localUser;
  events_.raise<rtc::MediaChannelListener>(
      [local](rtc::MediaChannelListener* l) { l->OnAudioEvent(local.c_str(), rtc::StoppedVoice); });
}

void SessionCore::unpublishVideo() {
  std::lock_guard lock(mutex_);
  videoPublished_ = false;
  if (!videoSending_) return;
  videoSending_ = false;
  const std::string local = config_.localUser;
  events_.raise<rtc::MediaChannelListener>(
      [local](rtc::MediaChannelListener* l) { l->OnVideoEvent(local.c_str(), rtc::StoppedImage); });
}

void SessionCore::muteLocalAudio(bool mute) {
  std::lock_guard lock(mutex_);
  localMuted_ = mute;
}

void SessionCore::setLocalVideoSize(int width, int height) {
  std::lock_guard lock(mutex_);
  videoWidth_ = width;
  videoHeight_ = height;
}

int SessionCore::joinGroup(const char* group) {
  if (group == nullptr || *group == '\0') return rtc::Join_Param_Error;
  std::lock_guard lock(mutex_);
  group_ = group;
  const std::string name = group_;
  events_.raise<rtc::MediaServiceListener>(
      [name](auto* l) { l->OnGroupStateChanged(name.c_str(), rtc::GroupJoining, rtc::GroupInit); });
  events_.raise<rtc::MediaServiceListener>(
      [name](auto* l) { l->OnGroupStateChanged(name.c_str(), rtc::GroupJoined, rtc::GroupInit); },
      milliseconds(config_.joinDelayMs));
  return rtc::Join_Successed;
}

void SessionCore::leaveGroup() {
  std::string name;
  {
    std::lock_guard lock(mutex_);
    if (group_.empty()) return;
    name.swap(group_);
  }
  events_.raise<rtc::MediaServiceListener>(
      [name](auto* l) { l->OnGroupStateChanged(name.c_str(), rtc::GroupInit, rtc::GroupInit); });
}

rtc::EchoCheckResult echoResultFor(rtc::EchoCheckType type) {
  rtc::EchoCheckResult result;
  result.network_result = type == rtc::Network || type == rtc::Unkown ? rtc::GOOD : rtc::NONE;
  if (type == rtc::Performance || type == rtc::Unkown) result.performance_result = {rtc::GOOD, rtc::UNKNOWN};
  if (type == rtc::Driver || type == rtc::Unkown) result.driver_result = {rtc::GOOD, rtc::DRIVER_UNKNOWN};
  result.info["type"] = std::to_string(static_cast<int>(type));
  result.info["machine"] = "loopback";
  return result;
}

void SessionCore::startEcho(rtc::EchoCheckType type) {
  std::lock_guard lock(mutex_);
  echoRunning_ = true;
  const uint64_t generation = ++echoGeneration_;
  events_.later(milliseconds(config_.echoDelayMs), [this, generation, type] {
    {
      std::lock_guard inner(mutex_);
      if (generation != echoGeneration_ || !echoRunning_) return;
    }
    const auto result = echoResultFor(type);
    events_.registry().invoke<rtc::MediaServiceListener>([&](auto* l) { l->onEchoResult(result); });
  });
}

void SessionCore::stopEcho(rtc::EchoCheckType) {
  std::lock_guard lock(mutex_);
  echoRunning_ = false;
  ++echoGeneration_;
}

bool SessionCore::echoRunning() {
  std::lock_guard lock(mutex_);
  return echoRunning_;
}

}  // namespace orva::loopback
