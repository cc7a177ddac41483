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
    ORVA_JOURNAL(enable);
    media([&](auto& m) { m.simulcast = enable; });
    return kOk;
  }
  void SetVideoEncoderParam(const rtc::VideoEncParam& param) override {
    ORVA_JOURNAL(param);
    media([&](auto& m) { m.encoder = param; });
  }
  int PublishVideo(rtc::VideoSource source, const std::string& sourceId) override {
    ORVA_JOURNAL(source, sourceId);
    return startVideo(source, sourceId);
  }
  int PublishVideo(rtc::VideoSource source) override {
    ORVA_JOURNAL(source);
    return startVideo(source, "");
  }
  void UnPublishVideo() override {
    ORVA_JOURNAL();
    parts_.session.unpublishVideo();
  }
  int ChangeVideoSource(rtc::VideoSource source, const std::string& sourceId) override {
    ORVA_JOURNAL(source, sourceId);
    media([&](auto& m) {
      m.videoSource = source;
      m.videoSourceId = sourceId;
    });
    return kOk;
  }
  int ChangeVideoSource(rtc::VideoSource source) override {
    ORVA_JOURNAL(source);
    media([&](auto& m) {
      m.videoSource = source;
      m.videoSourceId.clear();
    });
    return kOk;
  }
  void ReConfigVideo(rtc::Settings* settings) override { ORVA_JOURNAL(settings); }
  void MirrorDeliveredFrame(bool mirror) override {
    ORVA_JOURNAL(mirror);
    media([&](auto& m) { m.mirror = mirror; });
  }
  int PauseVideo(bool pause) override {
    ORVA_JOURNAL(pause);
    media([&](auto& m) { m.videoPaused = pause; });
    return kOk;
  }
  int SetVideoPauseImage(void* image, int fps) override {
    ORVA_JOURNAL(image, fps);
    return image != nullptr ? setPauseImageFps(fps) : kInvalidArgument;
  }
  int SetVideoPauseImage(rtc::VideoFrame* frame, int fps) override {
    ORVA_JOURNAL(frame, fps);
    return frame != nullptr ? setPauseImageFps(fps) : kInvalidArgument;
  }
  int PublishAudio(rtc::AudioSource source) override {
    ORVA_JOURNAL(source);
    media([&](auto& m) { m.audioSource = source; });
    parts_.session.publishAudio();
    return kOk;
  }
  int ChangeAudioSource(rtc::AudioSource source) override {
    ORVA_JOURNAL(source);
    media([&](auto& m) { m.audioSource = source; });
    return kOk;
  }
  void UnPublishAudio() override {
    ORVA_JOURNAL();
    parts_.session.unpublishAudio();
  }
  int MixOutput(bool mix) override {
    ORVA_JOURNAL(mix);
    media([&](auto& m) { m.mixOutput = mix; });
    return kOk;
  }
  int MuteAudio(bool mute) override {
    ORVA_JOURNAL(mute);
    media([&](auto& m) { m.audioMuted = mute; });
    parts_.session.muteLocalAudio(mute);
    return kOk;
  }
  int StartPlayAudioFile(const char* file, bool loop, bool publish) override {
    ORVA_JOURNAL(file, loop, publish);
    return parts_.files.startChannelFile(file, loop);
  }
  void SetPlayAudioFileVolume(float volume) override {
    ORVA_JOURNAL(volume);
    media([&](auto& m) { m.fileVolume = volume; });
  }
  void StopPlayAudioFile() override {
    ORVA_JOURNAL();
    parts_.files.stopChannelFile();
  }
  int MuteOtherAudio(const char* userId, bool mute) override {
    ORVA_JOURNAL(userId, mute);
    return userId != nullptr ? toggle(&MediaState::mutedUsers, userId, mute) : kInvalidArgument;
  }
  int StartRender(const char* userId, void* window, int mode) override {
    ORVA_JOURNAL(userId, window, mode);
    return userId != nullptr ? toggle(&MediaState::renders, userId, true) : kInvalidArgument;
  }
  int SetRenderCropping(const char* userId, int x, int y, int width, int height) override {
    ORVA_JOURNAL(userId, x, y, width, height);
    return userId != nullptr && width >= 0 && height >= 0 ? kOk : kInvalidArgument;
  }
  int StartRenderWithSetting(const char* userId, void* window, rtc::Settings* settings) override {
    ORVA_JOURNAL(userId, window, settings);
    return userId != nullptr ? toggle(&MediaState::renders, userId, true) : kInvalidArgument;
  }
  void StopRender(const char* userId) override {
    ORVA_JOURNAL(userId);
    if (userId != nullptr) toggle(&MediaState::renders, userId, false);
  }
  int StartPlayout(const char* userId) override {
    ORVA_JOURNAL(userId);
    return userId != nullptr ? toggle(&MediaState::playouts, userId, true) : kInvalidArgument;
  }
  void StopPlayout(const char* userId) override {
    ORVA_JOURNAL(userId);
    if (userId != nullptr) toggle(&MediaState::playouts, userId, false);
  }
  void PauseRender(const char* userId, bool pause) override {
    ORVA_JOURNAL(userId, pause);
    if (userId != nullptr) toggle(&MediaState::pausedRenders, userId, pause);
  }
  void PauseUser(const char* userId, bool pause) override {
    ORVA_JOURNAL(userId, pause);
    if (userId != nullptr) toggle(&MediaState::pausedUsers, userId, pause);
  }
  int DeliverVideoFrame(rtc::VideoFrame* frame, int cropX, int cropY, int cropWidth, int cropHeight) override {
    ORVA_JOURNAL(frame, cropX, cropY, cropWidth, cropHeight);
    return countFrame(frame != nullptr && cropWidth >= 0 && cropHeight >= 0, &MediaState::videoFramesDelivered);
  }
  int DeliverVideoFrame(rtc::VideoFrame* frame) override {
    ORVA_JOURNAL(frame);
    return countFrame(frame != nullptr, &MediaState::videoFramesDelivered);
  }
  int DeliverTextureVideoFrame(void* texture, const char* sourceId) override {
    ORVA_JOURNAL(texture, sourceId);
    return countFrame(texture != nullptr, &MediaState::videoFramesDelivered);
  }
  void SendSei(const std::string& sei) override {
    ORVA_JOURNAL(sei);
    media([](auto& m) { ++m.seiSent; });
  }
  int DeliverAudioFrame(rtc::AudioFrame* frame) override {
    ORVA_JOURNAL(frame);
    return countFrame(frame != nullptr, &MediaState::audioFramesDelivered);
  }
  int AddVideoProcessor(const char* id, rtc::VideoFrameProcessor* processor) override {
    ORVA_JOURNAL(id, processor);
    if (id == nullptr || processor == nullptr) return kInvalidArgument;
    media([&](auto& m) { m.videoProcessors[id] = processor; });
    return kOk;
  }
  void RemoveVideoProcessor(const char* id) override {
    ORVA_JOURNAL(id);
    if (id != nullptr) media([&](auto& m) { m.videoProcessors.erase(id); });
  }
  int AddAudioProcessor(const char* id, rtc::AudioFrameProcessor* processor) override {
    ORVA_JOURNAL(id, processor);
    if (id == nullptr || processor == nullptr) return kInvalidArgument;
    media([&](auto& m) { m.audioProcessors[id] = processor; });
    return kOk;
  }
  void RemoveAudioProcessor(const char* id) override {
    ORVA_JOURNAL(id);
    if (id != nullptr) media([&](auto& m) { m.audioProcessors.erase(id); });
  }

 protected:
  const char* journalInterface() const { return channelIface_; }
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
  int setPauseImageFps(int fps) {
    media([&](auto& m) { m.muteImageFps = fps; });
    return kOk;
  }
  int countFrame(bool valid, int MediaState::*counter) {
    if (!valid) return kInvalidArgument;
    media([&](auto& m) { ++(m.*counter); });
    return kOk;
  }
  int startVideo(rtc::VideoSource source, const std::string& sourceId) {
    media([&](auto& m) {
      m.videoSource = source;
      m.videoSourceId = sourceId;
    });
    parts_.session.publishVideo();
    return kOk;
  }

  const char* const channelIface_;
  CoreParts& parts_;
};

}  // namespace orva::loopback
