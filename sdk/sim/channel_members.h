// The media-channel members that MediaChannel and OrvaEngine both declare,
// written once over the session, audio-file and media state of Core and
// journalled under the interface's own name.
#pragma once

#include <string>
#include <utility>

#include "core_parts.h"
#include "journal.h"
#include "status.h"

namespace orva::loopback {

template <class Base>
class ChannelMembers : public Base {
 public:
  template <class... BaseArgs>
  ChannelMembers(const char* iface, CoreParts& parts, BaseArgs&&... baseArgs)
      : Base(std::forward<BaseArgs>(baseArgs)...), channelIface_(iface), parts_(parts) {}

  int SetSimulcastMode(bool enable) override {
    return noteMedia("SetSimulcastMode", enable), media([&](auto& m) { m.simulcast = enable; }), kOk;
  }
  void SetVideoEncoderParam(const rtc::VideoEncParam& param) override {
    noteMedia("SetVideoEncoderParam", param), media([&](auto& m) { m.encoder = param; });
  }
  int PublishVideo(rtc::VideoSource source, const std::string& sourceId) override {
    noteMedia("PublishVideo", source, sourceId);
    return startVideo(source, sourceId);
  }
  int PublishVideo(rtc::VideoSource source) override {
    return noteMedia("PublishVideo", source), startVideo(source, "");
  }
  void UnPublishVideo() override { noteMedia("UnPublishVideo"), parts_.session.unpublishVideo(); }
  int ChangeVideoSource(rtc::VideoSource source, const std::string& sourceId) override {
    noteMedia("ChangeVideoSource", source, sourceId);
    return media([&](auto& m) { return m.videoSource = source, m.videoSourceId = sourceId, kOk; });
  }
  int ChangeVideoSource(rtc::VideoSource source) override {
    noteMedia("ChangeVideoSource", source);
    return media([&](auto& m) { return m.videoSource = source, m.videoSourceId.clear(), kOk; });
  }
  void ReConfigVideo(rtc::Settings* settings) override { noteMedia("ReConfigVideo", settings); }
  void MirrorDeliveredFrame(bool mirror) override {
    noteMedia("MirrorDeliveredFrame", mirror), media([&](auto& m) { m.mirror = mirror; });
  }
  int PauseVideo(bool pause) override {
    return noteMedia("PauseVideo", pause), media([&](auto& m) { m.videoPaused = pause; }), kOk;
  }
  int SetVideoPauseImage(void* image, int fps) override {
    noteMedia("SetVideoPauseImage", image, fps);
    return image != nullptr ? media([&](auto& m) { return m.muteImageFps = fps, kOk; }) : kInvalidArgument;
  }
  int SetVideoPauseImage(rtc::VideoFrame* frame, int fps) override {
    noteMedia("SetVideoPauseImage", frame, fps);
    return frame != nullptr ? media([&](auto& m) { return m.muteImageFps = fps, kOk; }) : kInvalidArgument;
  }
  int PublishAudio(rtc::AudioSource source) override {
    noteMedia("PublishAudio", source);
    media([&](auto& m) { m.audioSource = source; });
    parts_.session.publishAudio();
    return kOk;
  }
  int ChangeAudioSource(rtc::AudioSource source) override {
    return noteMedia("ChangeAudioSource", source), media([&](auto& m) { m.audioSource = source; }), kOk;
  }
  void UnPublishAudio() override { noteMedia("UnPublishAudio"), parts_.session.unpublishAudio(); }
  int MixOutput(bool mix) override {
    return noteMedia("MixOutput", mix), media([&](auto& m) { m.mixOutput = mix; }), kOk;
  }
  int MuteAudio(bool mute) override {
    noteMedia("MuteAudio", mute);
    media([&](auto& m) { m.audioMuted = mute; });
    parts_.session.muteLocalAudio(mute);
    return kOk;
  }
  int StartPlayAudioFile(const char* file, bool loop, bool publish) override {
    return noteMedia("StartPlayAudioFile", file, loop, publish), parts_.files.startChannelFile(file, loop);
  }
  void SetPlayAudioFileVolume(float volume) override {
    noteMedia("SetPlayAudioFileVolume", volume), media([&](auto& m) { m.fileVolume = volume; });
  }
  void StopPlayAudioFile() override { noteMedia("StopPlayAudioFile"), parts_.files.stopChannelFile(); }
  int MuteOtherAudio(const char* userId, bool mute) override {
    noteMedia("MuteOtherAudio", userId, mute);
    return userId != nullptr ? toggle(&MediaState::mutedUsers, userId, mute) : kInvalidArgument;
  }
  int StartRender(const char* userId, void* window, int mode) override {
    noteMedia("StartRender", userId, window, mode);
    return userId != nullptr ? toggle(&MediaState::renders, userId, true) : kInvalidArgument;
  }
  int SetRenderCropping(const char* userId, int x, int y, int width, int height) override {
    noteMedia("SetRenderCropping", userId, x, y, width, height);
    return userId != nullptr && width >= 0 && height >= 0 ? kOk : kInvalidArgument;
  }
  int StartRenderWithSetting(const char* userId, void* window, rtc::Settings* settings) override {
    noteMedia("StartRenderWithSetting", userId, window, settings);
    return userId != nullptr ? toggle(&MediaState::renders, userId, true) : kInvalidArgument;
  }
  void StopRender(const char* userId) override {
    noteMedia("StopRender", userId);
    if (userId != nullptr) toggle(&MediaState::renders, userId, false);
  }
  int StartPlayout(const char* userId) override {
    noteMedia("StartPlayout", userId);
    return userId != nullptr ? toggle(&MediaState::playouts, userId, true) : kInvalidArgument;
  }
  void StopPlayout(const char* userId) override {
    noteMedia("StopPlayout", userId);
    if (userId != nullptr) toggle(&MediaState::playouts, userId, false);
  }
  void PauseRender(const char* userId, bool pause) override {
    noteMedia("PauseRender", userId, pause);
    if (userId != nullptr) toggle(&MediaState::pausedRenders, userId, pause);
  }
  void PauseUser(const char* userId, bool pause) override {
    noteMedia("PauseUser", userId, pause);
    if (userId != nullptr) toggle(&MediaState::pausedUsers, userId, pause);
  }
  int DeliverVideoFrame(rtc::VideoFrame* frame, int cropX, int cropY, int cropWidth, int cropHeight) override {
    noteMedia("DeliverVideoFrame", frame, cropX, cropY, cropWidth, cropHeight);
    return countFrame(frame != nullptr && cropWidth >= 0 && cropHeight >= 0, &MediaState::videoFramesDelivered);
  }
  int DeliverVideoFrame(rtc::VideoFrame* frame) override {
    return noteMedia("DeliverVideoFrame", frame), countFrame(frame != nullptr, &MediaState::videoFramesDelivered);
  }
  int DeliverTextureVideoFrame(void* texture, const char* sourceId) override {
    noteMedia("DeliverTextureVideoFrame", texture, sourceId);
    return countFrame(texture != nullptr, &MediaState::videoFramesDelivered);
  }
  void SendSei(const std::string& sei) override {
    noteMedia("SendSei", sei), media([](auto& m) { ++m.seiSent; });
  }
  int DeliverAudioFrame(rtc::AudioFrame* frame) override {
    return noteMedia("DeliverAudioFrame", frame), countFrame(frame != nullptr, &MediaState::audioFramesDelivered);
  }
  int AddVideoProcessor(const char* id, rtc::VideoFrameProcessor* processor) override {
    noteMedia("AddVideoProcessor", id, processor);
    if (id == nullptr || processor == nullptr) return kInvalidArgument;
    return media([&](auto& m) { return m.videoProcessors[id] = processor, kOk; });
  }
  void RemoveVideoProcessor(const char* id) override {
    noteMedia("RemoveVideoProcessor", id);
    if (id != nullptr) media([&](auto& m) { m.videoProcessors.erase(id); });
  }
  int AddAudioProcessor(const char* id, rtc::AudioFrameProcessor* processor) override {
    noteMedia("AddAudioProcessor", id, processor);
    if (id == nullptr || processor == nullptr) return kInvalidArgument;
    return media([&](auto& m) { return m.audioProcessors[id] = processor, kOk; });
  }
  void RemoveAudioProcessor(const char* id) override {
    noteMedia("RemoveAudioProcessor", id);
    if (id != nullptr) media([&](auto& m) { m.audioProcessors.erase(id); });
  }

 protected:
  template <class... Args>
  void noteMedia(const char* member, const Args&... args) {
    noteCall(channelIface_, member, args...);
  }
  template <class Fn>
  auto media(Fn fn) {
    return parts_.media.with(fn);
  }
  int toggle(std::set<std::string> MediaState::*field, const char* userId, bool on) {
    return media([&](auto& m) {
      on ? (void)(m.*field).insert(userId) : (void)(m.*field).erase(userId);
      return kOk;
    });
  }
  int countFrame(bool valid, int MediaState::*counter) {
    if (!valid) return kInvalidArgument;
    return media([&](auto& m) { return ++(m.*counter), kOk; });
  }
  int startVideo(rtc::VideoSource source, const std::string& sourceId) {
    media([&](auto& m) { m.videoSource = source, m.videoSourceId = sourceId; });
    parts_.session.publishVideo();
    return kOk;
  }

  const char* const channelIface_;
  CoreParts& parts_;
};

}  // namespace orva::loopback
