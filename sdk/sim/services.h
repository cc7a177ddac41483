// The engine's sub-objects as callers see them. Each is a thin interface
// over CoreParts: it journals the call under its interface name (its
// journalInterface(), or the mixin's) and hands the work to the part that
// owns it.
#pragma once

#include <map>
#include <string>

#include "channel_members.h"
#include "core_parts.h"
#include "device_members.h"

namespace orva::loopback {

class MediaDeviceImpl final : public DeviceMembers<rtc::MediaDevice> {
 public:
  explicit MediaDeviceImpl(CoreParts& parts);
  int Initialize(rtc::Settings* settings, rtc::IMediaDeviceCallback* callback) override;

 private:
  CoreParts& parts_;
};

class ChannelImpl final : public ChannelMembers<rtc::MediaChannel> {
 public:
  ChannelImpl(CoreParts& parts, const char* name) : ChannelMembers(name, parts) {}
  using ChannelMembers::DeliverAudioFrame;

  int Initialize(rtc::Settings* settings, rtc::MediaChannelListener* listener) override;
  void Terminate() override;
  int UpdateRenderSetting(const char* userId, rtc::Settings* settings) override;
  void StopAllRender() override;
  void StopAllPlayout(bool stop) override;
  int DeliverAudioFrame(int8_t* data, int size, int freq, int channels, uint32_t extra) override;
  void RemoveAllVideoProcessor() override;
  void UpdateSetting(std::map<std::string, std::string> settings) override;
  void Downgrade(const rtc::DowngradeParam& param) override;
  bool isLink() override;
};

class AudioServiceImpl final : public rtc::AudioService {
 public:
  explicit AudioServiceImpl(CoreParts& parts) : parts_(parts) {}
  int Initialize(rtc::Settings* settings, rtc::AudioServiceListener* listener) override;
  void StartPlayFile(int fileId, const rtc::AudioFileParam* param) override;
  void PauseFile(int fileId) override;
  void ResumeFile(int fileId) override;
  void StopPlayFile(int fileId) override;
  void SeekFile(int fileId, int positionMs) override;
  void SetFileAllVolume(int volume) override;
  void SetFilePublishVolume(int fileId, int volume) override;
  void SetFileLocalVolume(int fileId, int volume) override;
  int GetFilePos(int fileId) override;
  int GetFileDuration(const char* path) override;
  void Terminate() override;

 private:
  static const char* journalInterface() { return "AudioService"; }
  CoreParts& parts_;
};

class TranscoderImpl final : public rtc::LocalMediaTranscoder {
 public:
  explicit TranscoderImpl(CoreParts& parts) : parts_(parts) {}
  int Initialize(rtc::Settings* settings, rtc::ILocalMediaTranscoderCallback* callback) override;
  void startTranscoding(const rtc::LocalMediaTranscodingParams& params) override;
  void updateTranscodingParams(const rtc::LocalMediaTranscodingParams& params) override;
  void stopTranscoding() override;
  void addImageSource(const std::string& imagePath, int zOrder) override;
  void removeImageSource(const std::string& imagePath) override;
  void setMixedVideoRenderView(void* window) override;
  void setRenderFPS(int fps) override;
  bool isSupportHevcEncode() override;
  void startRemoteTranscoding(const rtc::LocalMediaTranscodingParams& params) override;
  void updateRemoteTranscodingParams(const rtc::LocalMediaTranscodingParams& params) override;
  void stopRemoteTranscoding() override;
  void setRemoteVideoRenderView(void* window) override;

 private:
  static const char* journalInterface() { return "LocalMediaTranscoder"; }
  CoreParts& parts_;
};

class BeautyImpl final : public rtc::IBeautyEngine {
 public:
  explicit BeautyImpl(CoreParts& parts) : parts_(parts) {}
  void EnableBeauty(const std::string& cameraId) override;
  void SetBeautyParam(const std::string& key, const std::string& value) override;
  void DisableBeauty(const std::string& cameraId) override;
  void EnableBeautyParam(const std::string& cameraId, const rtc::BeautyInfo& info) override;
  void EnableBeautySkinSeg(const std::string& cameraId, bool enable) override;
  void SetBeautyFace2DPath(const std::string& path) override;

 private:
  static const char* journalInterface() { return "IBeautyEngine"; }
  CoreParts& parts_;
};

class LiveImpl final : public rtc::MediaLive {
 public:
  explicit LiveImpl(CoreParts& parts) : parts_(parts) {}
  int Initialize(rtc::Settings* settings) override;
  void Terminate() override;
  int StartLive(const char* url) override;
  void StopLive() override;
  int StartRender(void* window) override;
  void StopRender() override;

 private:
  static const char* journalInterface() { return "MediaLive"; }
  CoreParts& parts_;
};

// Live push, shared by MediaLive and OrvaEngine: the live face hears the
// first sent audio and video, and their stop.
int startLive(CoreParts& parts, const char* url);
void stopLive(CoreParts& parts);

class Core;

class MediaServiceImpl final : public rtc::IMediaService {
 public:
  explicit MediaServiceImpl(Core& core) : core_(core) {}
  rtc::MediaChannel* RealtimeChannel() override;
  rtc::MediaChannel* LiveChannel() override;
  rtc::MediaChannel* LightLiveChannel() override;
  rtc::MediaChannel* GroupChannel() override;
  rtc::MediaChannel* FusionLiveRtcChannel() override;
  rtc::MediaDevice* Device() override;
  rtc::AudioService* Audio() override;
  rtc::MediaLive* Live() override;
  rtc::LocalMediaTranscoder* MediaTranscoder() override;
  rtc::IBeautyEngine* BeautyEngine() override;
  int JoinSession(const char* session, rtc::Settings* settings) override;
  void LeaveSession() override;
  int Initialize(rtc::Settings* settings, rtc::MediaServiceListener* listener, void* reserved1,
                 void* reserved2) override;
  int Initialize(rtc::Settings* settings, rtc::MediaServiceListener* listener) override;
  int JoinGroup(const char* group, rtc::Settings* settings) override;
  void LeaveGroup() override;
  void Terminate() override;
  int LastError() override;
  void SetNetworkType(rtc::NetworkType type) override;
  void UpdateSetting(std::map<std::string, std::string> settings) override;
  void UpdateRtmpUrl(const std::string& url) override;
  bool IsEchoStarted() override;
  void StartEchoTest(rtc::EchoCheckType type) override;
  void StopEchoTest(rtc::EchoCheckType type) override;

 private:
  static const char* journalInterface() { return "IMediaService"; }
  Core& core_;
};

}  // namespace orva::loopback
