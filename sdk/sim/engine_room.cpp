// OrvaEngine's room-level operations: what an application drives a session
// with. Each maps onto the same parts as the engine's own operations.
#include "core.h"

namespace orva::loopback {

EngineImpl::EngineImpl(Core& core)
    : ChannelMembers("OrvaEngine", core.parts, "OrvaEngine", core.parts.device, core.parts.registry),
      core_(core),
      p_(core.parts) {}

int EngineImpl::start(rtc::Settings* settings, rtc::OrvaEngineListener* listener) {
  p_.start(settings);
  p_.registry.setAll(listener);
  return rtc::Init_Successd;
}

int EngineImpl::initialize(rtc::Settings* settings, rtc::OrvaEngineListener* listener) {
  call("initialize", settings, listener);
  // A test can make the engine refuse to start, as a real one may.
  const int refusal = settings != nullptr ? settings->get("loopback.initialize.result", 0) : 0;
  return refusal != 0 ? refusal : start(settings, listener);
}
void EngineImpl::destroy() { call("destroy"), p_.stop(); }
int EngineImpl::enterRoom(const char* roomId, rtc::Settings* settings) {
  return call("enterRoom", roomId, settings), p_.session.join(roomId, settings);
}
void EngineImpl::exitRoom() { call("exitRoom"), p_.session.leave(); }
int EngineImpl::getLastError() { return call("getLastError"), p_.session.lastError(); }
void EngineImpl::publishAudio(rtc::AudioSource source) {
  call("publishAudio", source);
  media([&](auto& m) { m.audioSource = source; });
  p_.session.publishAudio();
}
void EngineImpl::unPublishAudio() { call("unPublishAudio"), p_.session.unpublishAudio(); }
void EngineImpl::publishVideo(rtc::VideoSource source) { call("publishVideo", source), startVideo(source, ""); }
void EngineImpl::publishVideo(rtc::VideoSource source, rtc::VideoStreamType streamType) {
  call("publishVideo", source, streamType), startVideo(source, "");
}
void EngineImpl::unPublishVideo() { call("unPublishVideo"), p_.session.unpublishVideo(); }
void EngineImpl::muteLocalAudio(bool mute) {
  call("muteLocalAudio", mute);
  media([&](auto& m) { m.audioMuted = mute; });
  p_.session.muteLocalAudio(mute);
}
void EngineImpl::sendSEIMsg(const char* message) {
  call("sendSEIMsg", message);
  if (message != nullptr) media([](auto& m) { ++m.seiSent; });
}

rtc::MicrophoneList EngineImpl::getMicDevicesList() { return call("getMicDevicesList"), p_.device.microphones(); }
rtc::SpeakerList EngineImpl::getSpeakerDevicesList() { return call("getSpeakerDevicesList"), p_.device.speakers(); }
rtc::CameraList EngineImpl::getCameraDevicesList() { return call("getCameraDevicesList"), p_.device.cameras(); }
rtc::Microphone EngineImpl::getCurrentMicDevice() { return call("getCurrentMicDevice"), p_.device.currentMicrophone(); }
rtc::Microphone EngineImpl::getSystemMicDevice() { return call("getSystemMicDevice"), p_.device.systemMicrophone(); }
rtc::Speaker EngineImpl::getCurrentSpeakerDevice() {
  return call("getCurrentSpeakerDevice"), p_.device.currentSpeaker();
}
rtc::Speaker EngineImpl::getSystemSpeakerDevice() { return call("getSystemSpeakerDevice"), p_.device.systemSpeaker(); }
void EngineImpl::setCurrentMicDevice(const char* deviceId) {
  call("setCurrentMicDevice", deviceId), p_.device.setMicrophone(text(deviceId));
}
void EngineImpl::setCurrentSpeakerDevice(const char* deviceId) {
  call("setCurrentSpeakerDevice", deviceId), p_.device.setSpeaker(text(deviceId));
}
void EngineImpl::setAudioCaptureVolume(int volume) {
  call("setAudioCaptureVolume", volume), p_.device.setMicrophoneVolume(volume);
}
void EngineImpl::setAudioPlayoutVolume(int volume) {
  call("setAudioPlayoutVolume", volume), p_.device.setSpeakerVolume(volume);
}
void EngineImpl::setSystemAudioLoopbackVolume(int volume) {
  call("setSystemAudioLoopbackVolume", volume), p_.device.setLevel(&DeviceState::loopbackVolume, volume);
}
int EngineImpl::getCurrentMicDeviceVolume() { return call("getCurrentMicDeviceVolume"), get(&DeviceState::micVolume); }
int EngineImpl::getSystemMicVolume() { return call("getSystemMicVolume"), get(&DeviceState::systemMicVolume); }
int EngineImpl::getCurrentSpeakerVolume() { return call("getCurrentSpeakerVolume"), get(&DeviceState::speakerVolume); }
int EngineImpl::getSystemSpeakerVolume() {
  return call("getSystemSpeakerVolume"), get(&DeviceState::systemSpeakerVolume);
}
bool EngineImpl::getCurrentMicDeviceMute() { return call("getCurrentMicDeviceMute"), get(&DeviceState::micMute); }
bool EngineImpl::getSystemMicMute() { return call("getSystemMicMute"), get(&DeviceState::micMute); }
bool EngineImpl::getCurrentSpeakerDeviceMute() {
  return call("getCurrentSpeakerDeviceMute"), get(&DeviceState::speakerMute);
}
bool EngineImpl::getSystemSpeakerMute() { return call("getSystemSpeakerMute"), get(&DeviceState::speakerMute); }

void EngineImpl::setSystemAudioLoopbackDevice(const char* deviceName) {
  call("setSystemAudioLoopbackDevice", deviceName), set(&DeviceState::loopbackDevice, text(deviceName));
}
void EngineImpl::setSystemAudioLoopbackDevice() {
  call("setSystemAudioLoopbackDevice"), set(&DeviceState::loopbackDevice, std::string());
}
// An empty name disables the loopback and stops a running one.
void EngineImpl::enableSystemAudioLoopback(const char* deviceName) {
  call("enableSystemAudioLoopback", deviceName);
  const bool enable = deviceName != nullptr && *deviceName != '\0';
  p_.device.with([&](auto& s) {
    s.loopbackEnabled = enable;
    if (!enable) s.loopbackRunning = false;
  });
}
void EngineImpl::startSystemAudioLoopback() {
  call("startSystemAudioLoopback");
  p_.device.with([](auto& s) { s.loopbackRunning = s.loopbackEnabled; });
}

std::vector<rtc::Screen> EngineImpl::getScreenList() { return call("getScreenList"), p_.device.screenVector(); }
std::vector<rtc::Window> EngineImpl::getWindowList() { return call("getWindowList"), p_.device.windowVector(); }
void EngineImpl::updateScreenCaptureProperty(const char* sourceId, const rtc::ScreenCaptureProperty& property) {
  call("updateScreenCaptureProperty", sourceId, property);
  p_.device.with([&](auto& s) { s.captureProperties[text(sourceId)] = property; });
}

void EngineImpl::setCameraVideoProcessor(rtc::VideoFrameProcessor* processor) {
  call("setCameraVideoProcessor", processor), p_.registry.set(processor);
}
void EngineImpl::startCameraSource(const char* cameraId) {
  call("startCameraSource", cameraId), p_.device.startCameraSource(text(cameraId));
}
void EngineImpl::stopCameraSource(const char* cameraId) {
  call("stopCameraSource", cameraId), p_.device.stopCameraSource(text(cameraId));
}
void EngineImpl::setCameraCaptureParams(const char* cameraId, rtc::CameraCaptureParams& params) {
  call("setCameraCaptureParams", cameraId, params), p_.device.setCaptureParams(text(cameraId), params);
}
void EngineImpl::enableCameraGreenScreen(const char* cameraId, const rtc::SourceGreenInfo& info) {
  call("enableCameraGreenScreen", cameraId, info);
  p_.device.with([&](auto& s) { s.greenScreens[text(cameraId)] = info; });
}
void EngineImpl::setVideoMuteImage(const char* imagePath, int fps) {
  call("setVideoMuteImage", imagePath, fps);
  media([&](auto& m) { m.muteImage = text(imagePath), m.muteImageFps = fps; });
}
bool EngineImpl::isSupportHevcEncode() { return call("isSupportHevcEncode"), false; }

void EngineImpl::enableBeauty(const char* cameraId) {
  call("enableBeauty", cameraId), media([&](auto& m) { m.beautyCameras.insert(text(cameraId)); });
}
void EngineImpl::disableBeauty(const char* cameraId) {
  call("disableBeauty", cameraId), media([&](auto& m) { m.beautyCameras.erase(text(cameraId)); });
}
void EngineImpl::setBeautyParameter(const char* key, const char* value) {
  call("setBeautyParameter", key, value), media([&](auto& m) { m.beautyParams[text(key)] = text(value); });
}

void EngineImpl::enableAudioAGC(bool enable, int level) {
  call("enableAudioAGC", enable, level), p_.device.with([&](auto& s) { s.agc = enable, s.agcLevel = level; });
}
void EngineImpl::enableAudioANS(bool enable, int level) {
  call("enableAudioANS", enable, level), p_.device.with([&](auto& s) { s.ans = enable, s.ansLevel = level; });
}
void EngineImpl::enableAudioAEC(bool enable) { call("enableAudioAEC", enable), set(&DeviceState::aec, enable); }
void EngineImpl::enableStereoMicrophone(bool enable) {
  call("enableStereoMicrophone", enable), set(&DeviceState::stereo, enable);
}
bool EngineImpl::getAGCStatus() { return call("getAGCStatus"), get(&DeviceState::agc); }
bool EngineImpl::getAECStatus() { return call("getAECStatus"), get(&DeviceState::aec); }
bool EngineImpl::getANSStatus() { return call("getANSStatus"), get(&DeviceState::ans); }
bool EngineImpl::getStereoMicrophoneStatus() { return call("getStereoMicrophoneStatus"), get(&DeviceState::stereo); }
void EngineImpl::enableAudioCaptureFixDelay(bool enable, int delayMs) {
  call("enableAudioCaptureFixDelay", enable, delayMs);
  p_.device.with([&](auto& s) { s.fixDelay = enable, s.fixDelayMs = delayMs; });
}

void EngineImpl::removeEventHandler(rtc::OrvaEngineListener* listener, rtc::VideoFrameProcessor* processor) {
  call("removeEventHandler", listener, processor), p_.forget(listener, processor);
}

}  // namespace orva::loopback
