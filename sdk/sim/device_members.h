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

  rtc::SpeakerList Speakers() override { return note("Speakers"), device_.speakers(); }
  rtc::MicrophoneList Microphones() override { return note("Microphones"), device_.microphones(); }
  rtc::CameraList Cameras() override { return note("Cameras"), device_.cameras(); }
  int SetMicrophone(const std::string& guid) override {
    return note("SetMicrophone", guid), device_.setMicrophone(guid);
  }
  int SetMicrophone(int index) override { return note("SetMicrophone", index), device_.setMicrophone(index); }
  rtc::Microphone GetCurrentMicrophone() override { return note("GetCurrentMicrophone"), device_.currentMicrophone(); }
  int SetSpeaker(const std::string& guid) override { return note("SetSpeaker", guid), device_.setSpeaker(guid); }
  int SetSpeaker(int index) override { return note("SetSpeaker", index), device_.setSpeaker(index); }
  rtc::Speaker GetCurrentSpeaker() override { return note("GetCurrentSpeaker"), device_.currentSpeaker(); }
  int SetCameraRotation(rtc::VideoRotation rotation) override {
    note("SetCameraRotation", rotation);
    if (rotation % 90 != 0 || rotation < 0 || rotation > 270) return kInvalidArgument;
    return device_.with([&](auto& s) { return s.rotation = rotation, kOk; });
  }
  int StartSpeakerTest(const char* file, rtc::AsyncResultHandler* handler) override {
    return note("StartSpeakerTest", file, handler), device_.startSpeakerTest(file, handler);
  }
  int StartSpeakerTest(const char* file) override {
    return note("StartSpeakerTest", file), device_.startSpeakerTest(file, nullptr);
  }
  void StopSpeakerTest() override { note("StopSpeakerTest"), set(&DeviceState::speakerTest, false); }
  int StartMicrophoneTest() override { return note("StartMicrophoneTest"), set(&DeviceState::micTest, true), kOk; }
  void StopMicrophoneTest() override { note("StopMicrophoneTest"), set(&DeviceState::micTest, false); }
  int OpenCamera(const char* guid) override { return note("OpenCamera", guid), device_.openCamera(text(guid)); }
  int OpenCamera(int index) override { return note("OpenCamera", index), device_.openCamera(index); }
  void EnableCameraGreenScreen(const std::string& cameraId, const rtc::SourceGreenInfo& info) override {
    note("EnableCameraGreenScreen", cameraId, info);
    device_.with([&](auto& s) { s.greenScreens[cameraId] = info; });
  }
  int OpenCameraByGuid(const char* guid) override {
    return note("OpenCameraByGuid", guid), device_.openCamera(text(guid));
  }
  void OpenCameraAsync(int index, rtc::AsyncResultHandler* handler) override {
    note("OpenCameraAsync", index, handler), device_.openCameraAsync(index, handler);
  }
  rtc::Camera GetCurrentCamera() override { return note("GetCurrentCamera"), device_.currentCamera(); }
  void SetCameraCaptureParams(const std::string& cameraId, rtc::CameraCaptureParams& params) override {
    note("SetCameraCaptureParams", cameraId, params), device_.setCaptureParams(cameraId, params);
  }
  int MuteSpeaker(bool mute) override { return note("MuteSpeaker", mute), device_.muteSpeaker(mute); }
  int PauseCamera(bool pause) override {
    return note("PauseCamera", pause), set(&DeviceState::cameraPaused, pause), kOk;
  }
  void CloseCamera(const char* guid) override { note("CloseCamera", guid), device_.closeCamera(text(guid)); }
  void CloseCamera() override { note("CloseCamera"), device_.closeCurrentCamera(); }
  bool GetSpeakerMute() override { return note("GetSpeakerMute"), get(&DeviceState::speakerMute); }
  int MuteMicrophone(bool mute) override { return note("MuteMicrophone", mute), device_.muteMicrophone(mute); }
  bool GetMicrophoneMute() override { return note("GetMicrophoneMute"), get(&DeviceState::micMute); }
  int SetMicrophoneVolume(int volume) override {
    return note("SetMicrophoneVolume", volume), device_.setMicrophoneVolume(volume);
  }
  int SetMixExternalAudioVolume(int volume) override {
    return note("SetMixExternalAudioVolume", volume), device_.setLevel(&DeviceState::mixExternalVolume, volume);
  }
  int GetMicrophoneVolume() override { return note("GetMicrophoneVolume"), get(&DeviceState::micVolume); }
  int SetSpeakerVolume(int volume) override {
    return note("SetSpeakerVolume", volume), device_.setSpeakerVolume(volume);
  }
  int GetSpeakerVolume() override { return note("GetSpeakerVolume"), get(&DeviceState::speakerVolume); }
  int SetSystemSpeakerVolume(int volume) override {
    return note("SetSystemSpeakerVolume", volume), device_.setLevel(&DeviceState::systemSpeakerVolume, volume);
  }
  int SetLoudSpeakerStatus(bool on) override {
    return note("SetLoudSpeakerStatus", on), set(&DeviceState::loudSpeaker, on), kOk;
  }
  int StartPreview(void* window, const char* guid) override {
    note("StartPreview", window, guid);
    return device_.with([&](auto& s) { return s.previews.insert(text(guid)), kOk; });
  }
  int StartPreview(void* window) override {
    note("StartPreview", window);
    return device_.with([&](auto& s) { return s.previews.insert(""), kOk; });
  }
  void StopPreview(const char* guid) override {
    note("StopPreview", guid), device_.with([&](auto& s) { s.previews.erase(text(guid)); });
  }
  void StopPreview() override {
    note("StopPreview"), device_.with([&](auto& s) { s.previews.clear(); });
  }
  int SetMicrophoneEnhanceLevel(int level) override {
    return note("SetMicrophoneEnhanceLevel", level), device_.setLevel(&DeviceState::enhanceLevel, level);
  }
  int SetCameraVideoProcessor(rtc::VideoFrameProcessor* processor, const char* guid) override {
    return note("SetCameraVideoProcessor", processor, guid), registry_.set(processor), kOk;
  }
  int SetCameraVideoProcessor(rtc::VideoFrameProcessor* processor) override {
    return note("SetCameraVideoProcessor", processor), registry_.set(processor), kOk;
  }
  int SetCameraVideoProcessorByGuid(rtc::VideoFrameProcessor* processor, const char* guid) override {
    return note("SetCameraVideoProcessorByGuid", processor, guid), registry_.set(processor), kOk;
  }
  void ScaleMicrophone(float scale) override { note("ScaleMicrophone", scale), set(&DeviceState::micScale, scale); }
  void ScaleSpeaker(float scale) override { note("ScaleSpeaker", scale), set(&DeviceState::speakerScale, scale); }
  int StartCaptureWindow(rtc::Window window, int mode) override {
    return note("StartCaptureWindow", window, mode), device_.startCaptureWindow(window.id);
  }
  int StartCaptureScreen(rtc::Screen screen, int mode) override {
    return note("StartCaptureScreen", screen, mode), device_.startCaptureScreen(screen.id);
  }
  // A monitor handle names no loopback screen: any non-null one is the first.
  int StartCaptureScreen(void* monitor) override {
    note("StartCaptureScreen", monitor);
    return monitor != nullptr ? device_.startCaptureScreen(device_.screenVector().front().id) : kInvalidArgument;
  }
  int StartCaptureScreen(const char* screenId) override {
    return note("StartCaptureScreen", screenId), device_.startCaptureScreen(parseSourceId(screenId));
  }
  void UpdateScreenCaptureProperty(const std::string& sourceId, const rtc::ScreenCaptureProperty& property) override {
    note("UpdateScreenCaptureProperty", sourceId, property);
    device_.with([&](auto& s) { s.captureProperties[sourceId] = property; });
  }
  int StartScreenAudioCapture() override {
    return note("StartScreenAudioCapture"), set(&DeviceState::screenAudio, true), kOk;
  }
  int StopScreenAudioCapture() override {
    return note("StopScreenAudioCapture"), set(&DeviceState::screenAudio, false), kOk;
  }
  void SetScreenAudioCaptureDeviceId(const std::string& deviceId) override {
    note("SetScreenAudioCaptureDeviceId", deviceId), set(&DeviceState::screenAudioDevice, deviceId);
  }
  int SetScreenAudioCaptureVolume(int volume) override {
    return note("SetScreenAudioCaptureVolume", volume), device_.setLevel(&DeviceState::screenAudioVolume, volume);
  }
  void StopCaptureScreen(const char* screenId) override {
    note("StopCaptureScreen", screenId), device_.stopCaptureScreen(parseSourceId(screenId));
  }
  void StopCaptureWindow(const char* windowId) override {
    note("StopCaptureWindow", windowId), device_.stopCaptureWindow(parseSourceId(windowId));
  }
  rtc::WindowList Windows() override { return note("Windows"), device_.windows(); }
  rtc::ScreenList Screens() override { return note("Screens"), device_.screens(); }
  void SetWindowCaptureProcessor(rtc::VideoFrameProcessor* p) override {
    note("SetWindowCaptureProcessor", p), set(&DeviceState::windowProcessor, p);
  }
  void SetScreenCaptureProcessor(rtc::VideoFrameProcessor* p) override {
    note("SetScreenCaptureProcessor", p), set(&DeviceState::screenProcessor, p);
  }
  void SetScreenAudioCaptureProcessor(rtc::AudioFrameProcessor* p) override {
    note("SetScreenAudioCaptureProcessor", p), set(&DeviceState::screenAudioProcessor, p);
  }
  void SetMicCaptureProcessor(rtc::AudioFrameProcessor* p) override {
    note("SetMicCaptureProcessor", p), set(&DeviceState::micProcessor, p);
  }
  int GetCurrentAudioLevel(bool smoothed) override {
    return note("GetCurrentAudioLevel", smoothed), device_.audioLevel();
  }
  int GetCurrentAudioLevel() override { return note("GetCurrentAudioLevel"), device_.audioLevel(); }
  void CloseAllDevice() override { note("CloseAllDevice"), device_.closeAll(); }
  void enableCameraVideoProcessor(bool enable) override {
    note("enableCameraVideoProcessor", enable), set(&DeviceState::cameraProcessorEnabled, enable);
  }
  void startCameraRecord(const std::string& cameraId, const rtc::CameraRecordInfo& info) override {
    note("startCameraRecord", cameraId, info), device_.startCameraRecord(cameraId);
  }
  void stopCameraRecord(const std::string& cameraId) override {
    note("stopCameraRecord", cameraId), device_.stopCameraRecord(cameraId);
  }
  rtc::Microphone GetSystemMicDevice() override { return note("GetSystemMicDevice"), device_.systemMicrophone(); }
  rtc::Speaker GetSystemSpeakerDevice() override { return note("GetSystemSpeakerDevice"), device_.systemSpeaker(); }
  int GetSystemSpeakerVolume() override {
    return note("GetSystemSpeakerVolume"), get(&DeviceState::systemSpeakerVolume);
  }
  int GetSystemMicVolume() override { return note("GetSystemMicVolume"), get(&DeviceState::systemMicVolume); }
  // The loopback's system mixer follows the selected devices' mute.
  bool GetSystemMicMute() override { return note("GetSystemMicMute"), get(&DeviceState::micMute); }
  bool GetSystemSpeakerMute() override { return note("GetSystemSpeakerMute"), get(&DeviceState::speakerMute); }
  void EnableAudioAGC(bool enable, int level) override {
    note("EnableAudioAGC", enable, level);
    device_.with([&](auto& s) { s.agc = enable, s.agcLevel = level; });
  }
  void EnableAudioAEC(bool enable) override { note("EnableAudioAEC", enable), set(&DeviceState::aec, enable); }
  void EnableAudioANS(bool enable, int level) override {
    note("EnableAudioANS", enable, level);
    device_.with([&](auto& s) { s.ans = enable, s.ansLevel = level; });
  }
  bool GetAGCStatus() override { return note("GetAGCStatus"), get(&DeviceState::agc); }
  bool GetAECStatus() override { return note("GetAECStatus"), get(&DeviceState::aec); }
  bool GetANSStatus() override { return note("GetANSStatus"), get(&DeviceState::ans); }
  void EnableStereoMicrophone(bool enable) override {
    note("EnableStereoMicrophone", enable), set(&DeviceState::stereo, enable);
  }
  bool GetStereoMicrophoneStatus() override { return note("GetStereoMicrophoneStatus"), get(&DeviceState::stereo); }
  void EnableAudioCaptureFixDelay(bool enable, int delayMs) override {
    note("EnableAudioCaptureFixDelay", enable, delayMs);
    device_.with([&](auto& s) { s.fixDelay = enable, s.fixDelayMs = delayMs; });
  }
  void enableCameraVideoYuvOutput(bool enable) override {
    note("enableCameraVideoYuvOutput", enable), set(&DeviceState::yuvOutput, enable);
  }
  void startCameraSourceWithCaptureParams(const std::string& cameraId, rtc::CameraCaptureParams& params) override {
    note("startCameraSourceWithCaptureParams", cameraId, params);
    device_.setCaptureParams(cameraId, params);
    device_.startCameraSource(cameraId);
  }
  void createTraceWindow(int x, int y, const std::string& title, bool topMost, int flags) override {
    note("createTraceWindow", x, y, title, topMost, flags), set(&DeviceState::traceWindow, true);
  }
  void destroyTraceWindow() override { note("destroyTraceWindow"), set(&DeviceState::traceWindow, false); }

 protected:
  template <class... Args>
  void note(const char* member, const Args&... args) {
    noteCall(iface_, member, args...);
  }
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
