// The object through which script runs an engine session.
//
// Every forwarding operation checks for the engine first: before
// `initialize` there is none, and each operation then answers a fixed value
// (nothing, false, 0, -1, -100, empty lists and records) instead of failing.
// All members run on the script thread.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "bridge/event_handler.h"
#include "orva/sdk.h"

namespace Orva::Rtc {

class OrvaEngineWrapper {
 public:
  /// A wrapper of script's own (`new OrvaEngineWrapper()`): it runs an engine
  /// like any other, but `setCallback` binds only the process-wide instance,
  /// so its handler's events never reach script and none is kept.
  OrvaEngineWrapper();
  ~OrvaEngineWrapper();
  OrvaEngineWrapper(const OrvaEngineWrapper&) = delete;
  OrvaEngineWrapper& operator=(const OrvaEngineWrapper&) = delete;

  // --- Statics --------------------------------------------------------------

  /// The process-wide instance, made on first use; it lives until exit.
  static OrvaEngineWrapper* createOrvaEngine();
  /// Loads the settings file into `settings`, then creates the engine's
  /// crash-report client.
  static void createOrvaSentry(Settings* settings);
  static void updateOrvaSentry(Settings* settings);
  static void enableOrvaSentry(bool enable);
  static void destroyOrvaSentry(bool flush);
  static void reportOrvaSentryEvent(SentryReportType type, const std::string& tag, const std::string& message);
  static ScreenCaptureModeList getScreenCaptureModeList();
  static ScreenCaptureModeList getWindowCaptureModeList();

  // --- Session --------------------------------------------------------------

  OrvaEngine* getSDK() { return engine_; }
  void setLogDirPath(const std::string& path) { logDir_ = path; }
  /// Starts the engine with this wrapper's own event handler; `listener` is
  /// accepted for compatibility and not used.
  int initialize(Settings* settings, OrvaEngineListener* listener);
  void destroy();
  int enterRoom(const std::string& roomId, Settings* settings);
  void exitRoom();
  int getLastError();

  // --- Publishing -----------------------------------------------------------

  void publishAudio(AudioSource source);
  void unPublishAudio();
  void publishVideo(VideoSource source);
  void unPublishVideo();
  void muteLocalAudio(bool mute);
  /// Muting unpublishes; unmuting publishes the mixed source again.
  void muteLocalVideo(bool mute, VideoStreamType streamType);
  /// Sends `message` `count` times; nothing for a count below 1.
  void sendSEIMsg(const std::string& message, int count);

  // --- Devices --------------------------------------------------------------

  MicrophoneList getMicDevicesList();
  SpeakerList getSpeakerDevicesList();
  CameraList getCameraDevicesList();
  Microphone getCurrentMicDevice();
  Microphone getSystemMicDevice();
  Speaker getCurrentSpeakerDevice();
  Speaker getSystemSpeakerDevice();
  void setCurrentMicDevice(const std::string& deviceId);
  void setCurrentSpeakerDevice(const std::string& deviceId);
  void setAudioCaptureVolume(int volume);
  void setAudioPlayoutVolume(int volume);
  void setSystemAudioLoopbackVolume(int volume);
  int getCurrentMicDeviceVolume();
  int getSystemMicVolume();
  int getCurrentSpeakerVolume();
  int getSystemSpeakerVolume();
  bool getCurrentMicDeviceMute();
  bool getSystemMicMute();
  bool getCurrentSpeakerDeviceMute();
  bool getSystemSpeakerMute();
  void startSystemAudioLoopback(const std::string& deviceName);
  void stopSystemAudioLoopback();

  // --- Screens, windows and rendering ---------------------------------------

  std::vector<ScreenCaptureSourceInfo> getScreenCaptureSources();
  std::vector<Screen> getScreenList();
  std::vector<Window> getWindowList();
  void startScreenSource(const ScreenCaptureSourceInfo& info);
  void stopScreenSource(const ScreenCaptureSourceInfo& info);
  void updateScreenCaptureProperty(const std::string& sourceId, const ScreenCaptureProperty& property);
  void setCameraVideoProcessor(VideoFrameProcessor* processor);
  void setMixedVideoRenderView(void* window);
  /// Renders into the native window with this handle, if it is one.
  void setJsMixedVideoRenderView(uint32_t window);
  void setRemoteVideoRenderView(void* window);
  void startRenderVideo(const std::string& userId, void* window, int mode);
  void stopRenderVideo(const std::string& userId);
  void stopAllRenderVideo();
  void startPlayAudio(const std::string& userId);
  void stopPlayAudio(const std::string& userId);
  void stopAllPlayAudio();
  void setRenderFPS(int fps);

  // --- Capabilities ---------------------------------------------------------

  bool isSupportHevcEncode();
  /// Whether a texture can be shared with the graphics adapter `adapterKey`
  /// names; needs no engine.
  bool isSupportShareTexture(const std::string& adapterKey);
  AdapterInfo GetAdapterInfo();

  // --- Local transcoding and sources ----------------------------------------

  /// Starts composing and routes the composed frames to the event handler.
  void startTranscoding(const LocalMediaTranscodingParams& params);
  void updateTranscodingParams(const LocalMediaTranscodingParams& params);
  void stopTranscoding();
  void startRemoteTranscoding(const LocalMediaTranscodingParams& params);
  void updateRemoteTranscodingParams(const LocalMediaTranscodingParams& params);
  void stopRemoteTranscoding();
  void startCameraSource(const std::string& cameraId);
  void stopCameraSource(const std::string& cameraId);
  void startCameraSourceWithCaptureParams(const std::string& cameraId, CameraCaptureParams& params);
  void setCameraCaptureParams(const std::string& cameraId, CameraCaptureParams& params);
  void addImageSource(const std::string& imagePath, int zOrder = 0);
  void removeImageSource(const std::string& imagePath);
  void setVideoMuteImage(const std::string& imagePath, int fps = 15);
  void enableCameraGreenScreen(const std::string& cameraId, const SourceGreenInfo& info);
  void enableCameraVideoProcessor(bool enable);
  void enableCameraVideoYuvOutput(bool enable);
  void startCameraRecord(const std::string& cameraId, const CameraRecordInfo& info);
  void stopCameraRecord(const std::string& cameraId);

  // --- Beauty ---------------------------------------------------------------

  void enableBeauty(const std::string& cameraId);
  void disableBeauty(const std::string& cameraId);
  void setBeautyParameter(const std::string& key, const std::string& value);
  void enableBeautyParameter(const std::string& cameraId, const BeautyInfo& info);
  void enableBeautySkinSeg(const std::string& cameraId, bool enable);
  void setBeautyFace2DPath(const std::string& path);

  // --- Audio processing -----------------------------------------------------

  void enableAudioAGC(bool enable, int level = 0);
  void enableAudioANS(bool enable, int level = 0);
  void enableAudioAEC(bool enable);
  void enableStereoMicrophone(bool enable);
  bool getAGCStatus();
  bool getAECStatus();
  bool getANSStatus();
  bool getStereoMicrophoneStatus();
  void enableAudioCaptureFixDelay(bool enable, int delayMs);

  // --- Diagnostics ----------------------------------------------------------

  void createTraceWindow(int x, int y, const std::string& title, bool topMost, int flags = 0);
  void destroyTraceWindow();
  void updateRtmpUrl(const std::string& url);
  void startEchoTest(EchoCheckType type);
  void stopEchoTest(EchoCheckType type);

  /// The event handler this wrapper hands to the engine.
  OrvaEngineEventHandler* eventHandler() { return handler_.get(); }
  /// Takes the engine when script registers a handler before `initialize`;
  /// asks the engine for nothing once the wrapper has it.
  void adoptEngine() {
    if (engine_ == nullptr) engine_ = OrvaEngine::SDK();
  }

 private:
  /// Runs `call` on the engine, or answers `fallback` when there is none.
  template <class Result, class Call>
  Result forward(Result fallback, Call&& call) {
    return engine_ != nullptr ? call(*engine_) : fallback;
  }
  template <class Call>
  void forward(Call&& call) {
    if (engine_ != nullptr) call(*engine_);
  }

  struct ProcessWide {};
  /// The process-wide instance: its events wait for a handler.
  explicit OrvaEngineWrapper(ProcessWide);

  // Script thread only.
  std::string logDir_;
  OrvaEngine* engine_ = nullptr;  // never cleared once set
  bool devEnvironment_ = false;
  std::unique_ptr<OrvaEngineEventHandler> handler_;
};

}  // namespace Orva::Rtc
