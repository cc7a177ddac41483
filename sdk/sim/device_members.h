// The ~90 device members that MediaDevice and OrvaEngine both declare,
// written once: DeviceMembers<Interface> implements them on top of
// DeviceCore and journals each call under the interface's own name.
#pragma once

#include <string>

#include "device_core.h"
#include "journal.h"
#include "listener_registry.h"
#include "status.h"

namespace orva::loopback {

inline std::string text(const char* s) { return s != nullptr ? s : ""; }

template <class Interface>
class DeviceMembers : public Interface {
 public:
  DeviceMembers(const char* iface, DeviceCore& device, ListenerRegistry& registry)
      : iface_(iface), device_(device), registry_(registry) {}

  rtc::SpeakerList Speakers() override {
    ORVA_JOURNAL();
    return device_.speakers();
  }
  rtc::MicrophoneList Microphones() override {
    ORVA_JOURNAL();
    return device_.microphones();
  }
  rtc::CameraList Cameras() override {
    ORVA_JOURNAL();
    return device_.cameras();
  }
  int SetMicrophone(const std::string& guid) override {
    ORVA_JOURNAL(guid);
    return device_.setMicrophone(guid);
  }
  int SetMicrophone(int index) override {
    ORVA_JOURNAL(index);
    return device_.setMicrophone(index);
  }
  rtc::Microphone GetCurrentMicrophone() override {
    ORVA_JOURNAL();
    return device_.currentMicrophone();
  }
  int SetSpeaker(const std::string& guid) override {
    ORVA_JOURNAL(guid);
    return device_.setSpeaker(guid);
  }
  int SetSpeaker(int index) override {
    ORVA_JOURNAL(index);
    return device_.setSpeaker(index);
  }
  rtc::Speaker GetCurrentSpeaker() override {
    ORVA_JOURNAL();
    return device_.currentSpeaker();
  }
  int SetCameraRotation(rtc::VideoRotation rotation) override {
    ORVA_JOURNAL(rotation);
    if (rotation % 90 != 0 || rotation < 0 || rotation > 270) return kInvalidArgument;
    set(&DeviceState::rotation, rotation);
    return kOk;
  }
  int StartSpeakerTest(const char* file, rtc::AsyncResultHandler* handler) override {
    ORVA_JOURNAL(file, handler);
    return device_.startSpeakerTest(file, handler);
  }
  int StartSpeakerTest(const char* file) override {
    ORVA_JOURNAL(file);
    return device_.startSpeakerTest(file, nullptr);
  }
  void StopSpeakerTest() override {
    ORVA_JOURNAL();
    set(&DeviceState::speakerTest, false);
  }
  int StartMicrophoneTest() override {
    ORVA_JOURNAL();
    set(&DeviceState::micTest, true);
    return kOk;
  }
  void StopMicrophoneTest() override {
    ORVA_JOURNAL();
    set(&DeviceState::micTest, false);
  }
  int OpenCamera(const char* guid) override {
    ORVA_JOURNAL(guid);
    return device_.openCamera(text(guid));
  }
  int OpenCamera(int index) override {
    ORVA_JOURNAL(index);
    return device_.openCamera(index);
  }
  void EnableCameraGreenScreen(const std::string& cameraId, const rtc::SourceGreenInfo& info) override {
    ORVA_JOURNAL(cameraId, info);
    device_.with([&](auto& s) { s.greenScreens[cameraId] = info; });
  }
  int OpenCameraByGuid(const char* guid) override {
    ORVA_JOURNAL(guid);
    return device_.openCamera(text(guid));
  }
  void OpenCameraAsync(int index, rtc::AsyncResultHandler* handler) override {
    ORVA_JOURNAL(index, handler);
    device_.openCameraAsync(index, handler);
  }
  rtc::Camera GetCurrentCamera() override {
    ORVA_JOURNAL();
    return device_.currentCamera();
  }
  void SetCameraCaptureParams(const std::string& cameraId, rtc::CameraCaptureParams& params) override {
    ORVA_JOURNAL(cameraId, params);
    device_.setCaptureParams(cameraId, params);
  }
  int MuteSpeaker(bool mute) override {
    ORVA_JOURNAL(mute);
    return device_.muteSpeaker(mute);
  }
  int PauseCamera(bool pause) override {
    ORVA_JOURNAL(pause);
    set(&DeviceState::cameraPaused, pause);
    return kOk;
  }
  void CloseCamera(const char* guid) override {
    ORVA_JOURNAL(guid);
    device_.closeCamera(text(guid));
  }
  void CloseCamera() override {
    ORVA_JOURNAL();
    device_.closeCurrentCamera();
  }
  bool GetSpeakerMute() override {
    ORVA_JOURNAL();
    return get(&DeviceState::speakerMute);
  }
  int MuteMicrophone(bool mute) override {
    ORVA_JOURNAL(mute);
    return device_.muteMicrophone(mute);
  }
  bool GetMicrophoneMute() override {
    ORVA_JOURNAL();
    return get(&DeviceState::micMute);
  }
  int SetMicrophoneVolume(int volume) override {
    ORVA_JOURNAL(volume);
    return device_.setMicrophoneVolume(volume);
  }
  int SetMixExternalAudioVolume(int volume) override {
    ORVA_JOURNAL(volume);
    return device_.setLevel(&DeviceState::mixExternalVolume, volume);
  }
  int GetMicrophoneVolume() override {
    ORVA_JOURNAL();
    return get(&DeviceState::micVolume);
  }
  int SetSpeakerVolume(int volume) override {
    ORVA_JOURNAL(volume);
    return device_.setSpeakerVolume(volume);
  }
  int GetSpeakerVolume() override {
    ORVA_JOURNAL();
    return get(&DeviceState::speakerVolume);
  }
  int SetSystemSpeakerVolume(int volume) override {
    ORVA_JOURNAL(volume);
    return device_.setLevel(&DeviceState::systemSpeakerVolume, volume);
  }
  int SetLoudSpeakerStatus(bool on) override {
    ORVA_JOURNAL(on);
    set(&DeviceState::loudSpeaker, on);
    return kOk;
  }
  int StartPreview(void* window, const char* guid) override {
    ORVA_JOURNAL(window, guid);
    device_.with([&](auto& s) { s.previews.insert(text(guid)); });
    return kOk;
  }
  int StartPreview(void* window) override {
    ORVA_JOURNAL(window);
    device_.with([&](auto& s) { s.previews.insert(""); });
    return kOk;
  }
  void StopPreview(const char* guid) override {
    ORVA_JOURNAL(guid);
    device_.with([&](auto& s) { s.previews.erase(text(guid)); });
  }
  void StopPreview() override {
    ORVA_JOURNAL();
    device_.with([&](auto& s) { s.previews.clear(); });
  }
  int SetMicrophoneEnhanceLevel(int level) override {
    ORVA_JOURNAL(level);
    return device_.setLevel(&DeviceState::enhanceLevel, level);
  }
  int SetCameraVideoProcessor(rtc::VideoFrameProcessor* processor, const char* guid) override {
    ORVA_JOURNAL(processor, guid);
    registry_.set(processor);
    return kOk;
  }
  int SetCameraVideoProcessor(rtc::VideoFrameProcessor* processor) override {
    ORVA_JOURNAL(processor);
    registry_.set(processor);
    return kOk;
  }
  int SetCameraVideoProcessorByGuid(rtc::VideoFrameProcessor* processor, const char* guid) override {
    ORVA_JOURNAL(processor, guid);
    registry_.set(processor);
    return kOk;
  }
  void ScaleMicrophone(float scale) override {
    ORVA_JOURNAL(scale);
    set(&DeviceState::micScale, scale);
  }
  void ScaleSpeaker(float scale) override {
    ORVA_JOURNAL(scale);
    set(&DeviceState::speakerScale, scale);
  }
  int StartCaptureWindow(rtc::Window window, int mode) override {
    ORVA_JOURNAL(window, mode);
    return device_.startCaptureWindow(window.id);
  }
  int StartCaptureScreen(rtc::Screen screen, int mode) override {
    ORVA_JOURNAL(screen, mode);
    return device_.startCaptureScreen(screen.id);
  }
  // A monitor handle names no loopback screen: any non-null one is the first.
  int StartCaptureScreen(void* monitor) override {
    ORVA_JOURNAL(monitor);
    return monitor != nullptr ? device_.startCaptureScreen(device_.screenVector().front().id) : kInvalidArgument;
  }
  int StartCaptureScreen(const char* screenId) override {
    ORVA_JOURNAL(screenId);
    return device_.startCaptureScreen(parseSourceId(screenId));
  }
  void UpdateScreenCaptureProperty(const std::string& sourceId, const rtc::ScreenCaptureProperty& property) override {
    ORVA_JOURNAL(sourceId, property);
    device_.with([&](auto& s) { s.captureProperties[sourceId] = property; });
  }
  int StartScreenAudioCapture() override {
    ORVA_JOURNAL();
    set(&DeviceState::screenAudio, true);
    return kOk;
  }
  int StopScreenAudioCapture() override {
    ORVA_JOURNAL();
    set(&DeviceState::screenAudio, false);
    return kOk;
  }
  void SetScreenAudioCaptureDeviceId(const std::string& deviceId) override {
    ORVA_JOURNAL(deviceId);
    set(&DeviceState::screenAudioDevice, deviceId);
  }
  int SetScreenAudioCaptureVolume(int volume) override {
    ORVA_JOURNAL(volume);
    return device_.setLevel(&DeviceState::screenAudioVolume, volume);
  }
  void StopCaptureScreen(const char* screenId) override {
    ORVA_JOURNAL(screenId);
    device_.stopCaptureScreen(parseSourceId(screenId));
  }
  void StopCaptureWindow(const char* windowId) override {
    ORVA_JOURNAL(windowId);
    device_.stopCaptureWindow(parseSourceId(windowId));
  }
  rtc::WindowList Windows() override {
    ORVA_JOURNAL();
    return device_.windows();
  }
  rtc::ScreenList Screens() override {
    ORVA_JOURNAL();
    return device_.screens();
  }
  void SetWindowCaptureProcessor(rtc::VideoFrameProcessor* p) override {
    ORVA_JOURNAL(p);
    set(&DeviceState::windowProcessor, p);
  }
  void SetScreenCaptureProcessor(rtc::VideoFrameProcessor* p) override {
    ORVA_JOURNAL(p);
    set(&DeviceState::screenProcessor, p);
  }
  void SetScreenAudioCaptureProcessor(rtc::AudioFrameProcessor* p) override {
    ORVA_JOURNAL(p);
    set(&DeviceState::screenAudioProcessor, p);
  }
  void SetMicCaptureProcessor(rtc::AudioFrameProcessor* p) override {
    ORVA_JOURNAL(p);
    set(&DeviceState::micProcessor, p);
  }
  int GetCurrentAudioLevel(bool smoothed) override {
    ORVA_JOURNAL(smoothed);
    return device_.audioLevel();
  }
  int GetCurrentAudioLevel() override {
    ORVA_JOURNAL();
    return device_.audioLevel();
  }
  void CloseAllDevice() override {
    ORVA_JOURNAL();
    device_.closeAll();
  }
  void enableCameraVideoProcessor(bool enable) override {
    ORVA_JOURNAL(enable);
    set(&DeviceState::cameraProcessorEnabled, enable);
  }
  void startCameraRecord(const std::string& cameraId, const rtc::CameraRecordInfo& info) override {
    ORVA_JOURNAL(cameraId, info);
    device_.startCameraRecord(cameraId);
  }
  void stopCameraRecord(const std::string& cameraId) override {
    ORVA_JOURNAL(cameraId);
    device_.stopCameraRecord(cameraId);
  }
  rtc::Microphone GetSystemMicDevice() override {
    ORVA_JOURNAL();
    return device_.systemMicrophone();
  }
  rtc::Speaker GetSystemSpeakerDevice() override {
    ORVA_JOURNAL();
    return device_.systemSpeaker();
  }
  int GetSystemSpeakerVolume() override {
    ORVA_JOURNAL();
    return get(&DeviceState::systemSpeakerVolume);
  }
  int GetSystemMicVolume() override {
    ORVA_JOURNAL();
    return get(&DeviceState::systemMicVolume);
  }
  // The loopback's system mixer follows the selected devices' mute.
  bool GetSystemMicMute() override {
    ORVA_JOURNAL();
    return get(&DeviceState::micMute);
  }
  bool GetSystemSpeakerMute() override {
    ORVA_JOURNAL();
    return get(&DeviceState::speakerMute);
  }
  void EnableAudioAGC(bool enable, int level) override {
    ORVA_JOURNAL(enable, level);
    device_.with([&](auto& s) {
      s.agc = enable;
      s.agcLevel = level;
    });
  }
  void EnableAudioAEC(bool enable) override {
    ORVA_JOURNAL(enable);
    set(&DeviceState::aec, enable);
  }
  void EnableAudioANS(bool enable, int level) override {
    ORVA_JOURNAL(enable, level);
    device_.with([&](auto& s) {
      s.ans = enable;
      s.ansLevel = level;
    });
  }
  bool GetAGCStatus() override {
    ORVA_JOURNAL();
    return get(&DeviceState::agc);
  }
  bool GetAECStatus() override {
    ORVA_JOURNAL();
    return get(&DeviceState::aec);
  }
  bool GetANSStatus() override {
    ORVA_JOURNAL();
    return get(&DeviceState::ans);
  }
  void EnableStereoMicrophone(bool enable) override {
    ORVA_JOURNAL(enable);
    set(&DeviceState::stereo, enable);
  }
  bool GetStereoMicrophoneStatus() override {
    ORVA_JOURNAL();
    return get(&DeviceState::stereo);
  }
  void EnableAudioCaptureFixDelay(bool enable, int delayMs) override {
    ORVA_JOURNAL(enable, delayMs);
    device_.with([&](auto& s) {
      s.fixDelay = enable;
      s.fixDelayMs = delayMs;
    });
  }
  void enableCameraVideoYuvOutput(bool enable) override {
    ORVA_JOURNAL(enable);
    set(&DeviceState::yuvOutput, enable);
  }
  void startCameraSourceWithCaptureParams(const std::string& cameraId, rtc::CameraCaptureParams& params) override {
    ORVA_JOURNAL(cameraId, params);
    device_.setCaptureParams(cameraId, params);
    device_.startCameraSource(cameraId);
  }
  void createTraceWindow(int x, int y, const std::string& title, bool topMost, int flags) override {
    ORVA_JOURNAL(x, y, title, topMost, flags);
    set(&DeviceState::traceWindow, true);
  }
  void destroyTraceWindow() override {
    ORVA_JOURNAL();
    set(&DeviceState::traceWindow, false);
  }

 protected:
  const char* journalInterface() const { return iface_; }
  template <class T, class V>
  void set(T DeviceState::*field, const V& value) {
    device_.with([&](auto& s) { s.*field = value; });
  }
  template <class T>
  T get(T DeviceState::*field) {
    return device_.with([&](auto& s) { return s.*field; });
  }

  const char* const iface_;
  DeviceCore& device_;
  ListenerRegistry& registry_;
};

}  // namespace orva::loopback
