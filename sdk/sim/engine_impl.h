// OrvaEngine and RtcEngine over the shared parts. The device and channel
// members come from the mixins; what is declared here is the engine's own:
// the room-level operations, lifecycle, accessors, files, transcoding,
// beauty and renders.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "channel_members.h"
#include "core_parts.h"
#include "device_members.h"

namespace orva::loopback {

class Core;

class EngineImpl final : public ChannelMembers<DeviceMembers<rtc::OrvaEngine>> {
 public:
  explicit EngineImpl(Core& core);

  // Overloads the mixins declare one way and the engine another.
  using ChannelMembers::StartRender;
  using ChannelMembers::StopRender;
  using DeviceMembers::EnableAudioAGC;
  using DeviceMembers::EnableAudioANS;

  // Room level.
  int initialize(rtc::Settings* settings, rtc::OrvaEngineListener* listener) override;
  void destroy() override;
  int enterRoom(const char* roomId, rtc::Settings* settings) override;
  void exitRoom() override;
  int getLastError() override;
  void publishAudio(rtc::AudioSource source) override;
  void unPublishAudio() override;
  void publishVideo(rtc::VideoSource source) override;
  void publishVideo(rtc::VideoSource source, rtc::VideoStreamType streamType) override;
  void unPublishVideo() override;
  void muteLocalAudio(bool mute) override;
  void sendSEIMsg(const char* message) override;
  rtc::MicrophoneList getMicDevicesList() override;
  rtc::SpeakerList getSpeakerDevicesList() override;
  rtc::CameraList getCameraDevicesList() override;
  rtc::Microphone getCurrentMicDevice() override;
  rtc::Microphone getSystemMicDevice() override;
  rtc::Speaker getCurrentSpeakerDevice() override;
  rtc::Speaker getSystemSpeakerDevice() override;
  void setCurrentMicDevice(const char* deviceId) override;
  void setCurrentSpeakerDevice(const char* deviceId) override;
  void setAudioCaptureVolume(int volume) override;
  void setAudioPlayoutVolume(int volume) override;
  void setSystemAudioLoopbackVolume(int volume) override;
  int getCurrentMicDeviceVolume() override;
  int getSystemMicVolume() override;
  int getCurrentSpeakerVolume() override;
  int getSystemSpeakerVolume() override;
  bool getCurrentMicDeviceMute() override;
  bool getSystemMicMute() override;
  bool getCurrentSpeakerDeviceMute() override;
  bool getSystemSpeakerMute() override;
  void setSystemAudioLoopbackDevice(const char* deviceName) override;
  void setSystemAudioLoopbackDevice() override;
  void enableSystemAudioLoopback(const char* deviceName) override;
  void startSystemAudioLoopback() override;
  std::vector<rtc::Screen> getScreenList() override;
  std::vector<rtc::Window> getWindowList() override;
  void updateScreenCaptureProperty(const char* sourceId, const rtc::ScreenCaptureProperty& property) override;
  void setCameraVideoProcessor(rtc::VideoFrameProcessor* processor) override;
  void startCameraSource(const char* cameraId) override;
  void stopCameraSource(const char* cameraId) override;
  void setCameraCaptureParams(const char* cameraId, rtc::CameraCaptureParams& params) override;
  void enableCameraGreenScreen(const char* cameraId, const rtc::SourceGreenInfo& info) override;
  void setVideoMuteImage(const char* imagePath, int fps) override;
  bool isSupportHevcEncode() override;
  void enableBeauty(const char* cameraId) override;
  void disableBeauty(const char* cameraId) override;
  void setBeautyParameter(const char* key, const char* value) override;
  void enableAudioAGC(bool enable, int level) override;
  void enableAudioANS(bool enable, int level) override;
  void enableAudioAEC(bool enable) override;
  void enableStereoMicrophone(bool enable) override;
  bool getAGCStatus() override;
  bool getAECStatus() override;
  bool getANSStatus() override;
  bool getStereoMicrophoneStatus() override;
  void enableAudioCaptureFixDelay(bool enable, int delayMs) override;
  void removeEventHandler(rtc::OrvaEngineListener* listener, rtc::VideoFrameProcessor* processor) override;

  // Engine operations.
  int Initialize(rtc::Settings* settings, rtc::OrvaEngineListener* listener, void* reserved1, void* reserved2) override;
  int Initialize(rtc::Settings* settings) override;
  int Initialize(rtc::Settings* settings, rtc::ILocalMediaTranscoderCallback* callback) override;
  int Initialize(rtc::Settings* settings, rtc::OrvaEngineListener* listener) override;
  void Terminate() override;
  const char* GetVersion() override;
  rtc::IMediaService* MediaService() override;
  rtc::MediaChannel* RealtimeChannel() override;
  rtc::MediaChannel* LiveChannel() override;
  rtc::MediaChannel* LightLiveChannel() override;
  rtc::MediaChannel* GroupChannel() override;
  rtc::MediaDevice* Device() override;
  rtc::AudioService* Audio() override;
  rtc::LocalMediaTranscoder* MediaTranscoder() override;
  rtc::IBeautyEngine* BeautyEngine() override;
  int JoinSession(const char* session, rtc::Settings* settings) override;
  void LeaveSession() override;
  int JoinGroup(const char* group, rtc::Settings* settings) override;
  void LeaveGroup() override;
  int LastError() override;
  void EnableAudioAGC(bool enable) override;
  void EnableAudioANS(bool enable) override;
  int StartRender(void* window) override;
  int UpdateRenderSetting(const char* userId, void* window, rtc::Settings* settings) override;
  void StopRender() override;
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
  int StartLive(const char* url) override;
  void StopLive() override;
  void startTranscoding(const rtc::LocalMediaTranscodingParams& params) override;
  void updateTranscodingParams(const rtc::LocalMediaTranscodingParams& params) override;
  void stopTranscoding() override;
  void addImageSource(const std::string& imagePath, int zOrder) override;
  void removeImageSource(const std::string& imagePath) override;
  void setMixedVideoRenderView(void* window) override;
  void setRenderFPS(int fps) override;
  bool IsSupportHevcEncode() override;
  void EnableBeauty(const std::string& cameraId) override;
  void SetBeautyParam(const std::string& key, const std::string& value) override;
  void DisableBeauty(const std::string& cameraId) override;
  void enableBeautyParameter(const std::string& cameraId, const rtc::BeautyInfo& info) override;
  void updateRtmpUrl(const std::string& url) override;
  int startRenderVideo(const std::string& userId, void* window, int mode) override;
  void stopRenderVideo(const std::string& userId) override;
  void stopAllRenderVideo() override;
  int startPlayAudio(const std::string& userId) override;
  void stopPlayAudio(const std::string& userId) override;
  void stopAllPlayAudio() override;
  void enableBeautySkinSeg(const std::string& cameraId, bool enable) override;
  void setBeautyFace2DPath(const std::string& path) override;
  void startRemoteTranscoding(const rtc::LocalMediaTranscodingParams& params) override;
  void updateRemoteTranscodingParams(const rtc::LocalMediaTranscodingParams& params) override;
  void stopRemoteTranscoding() override;
  void setRemoteVideoRenderView(void* window) override;
  void startEchoTest(rtc::EchoCheckType type) override;
  void stopEchoTest(rtc::EchoCheckType type) override;
  rtc::AdapterInfo GetAdapterInfo() override;

 private:
  // The engine's own members and both mixins journal under this name.
  static const char* journalInterface() { return "OrvaEngine"; }
  // Starts the engine and registers `listener` on all seven faces.
  int start(rtc::Settings* settings, rtc::OrvaEngineListener* listener);

  Core& core_;
  CoreParts& p_;
};

class RtcEngineImpl final : public rtc::RtcEngine {
 public:
  explicit RtcEngineImpl(Core& core) : core_(core) {}
  int Initialize(rtc::RtcEngineListener* listener) override;
  void Terminate() override;
  const char* GetVersion() override;
  rtc::IMediaService* MediaService() override;

 private:
  static const char* journalInterface() { return "RtcEngine"; }
  Core& core_;
};

// The version text both engines report.
inline constexpr const char* kEngineVersion = "1.0.0-loopback";

}  // namespace orva::loopback
