// OrvaEngine's room-level operations: what an application drives a session
// with. Each maps onto the same parts as the engine's own operations.
#include "core.h"

namespace orva::loopback {

EngineImpl::EngineImpl(Core& core)
    : ChannelMembers(journalInterface(), core.parts, journalInterface(), core.parts.device, core.parts.registry),
      core_(core),
      p_(core.parts) {}

int EngineImpl::start(rtc::Settings* settings, rtc::OrvaEngineListener* listener) {
  p_.start(settings);
  p_.registry.setAll(listener);
  return rtc::Init_Successd;
}

int EngineImpl::initialize(rtc::Settings* settings, rtc::OrvaEngineListener* listener) {
  ORVA_JOURNAL(settings, listener);
  // A test can make the engine refuse to start, as a real one may.
  const int refusal = settings != nullptr ? settings->get("loopback.initialize.result", 0) : 0;
  return refusal != 0 ? refusal : start(settings, listener);
}
void EngineImpl::destroy() {
  ORVA_JOURNAL();
  p_.stop();
}
int EngineImpl::enterRoom(const char* roomId, rtc::Settings* settings) {
  ORVA_JOURNAL(roomId, settings);
  return p_.session.join(roomId, settings);
}
void EngineImpl::exitRoom() {
  ORVA_JOURNAL();
  p_.session.leave();
}
int EngineImpl::getLastError() {
  ORVA_JOURNAL();
  return p_.session.lastError();
}
void EngineImpl::publishAudio(rtc::AudioSource source) {
  ORVA_JOURNAL(source);
  media([&](auto& m) { m.audioSource = source; });
  p_.session.publishAudio();
}
void EngineImpl::unPublishAudio() {
  ORVA_JOURNAL();
  p_.session.unpublishAudio();
}
void EngineImpl::publishVideo(rtc::VideoSource source) {
  ORVA_JOURNAL(source);
  startVideo(source, "");
}
void EngineImpl::publishVideo(rtc::VideoSource source, rtc::VideoStreamType streamType) {
  ORVA_JOURNAL(source, streamType);
  startVideo(source, "");
}
void EngineImpl::unPublishVideo() {
  ORVA_JOURNAL();
  p_.session.unpublishVideo();
}
void EngineImpl::muteLocalAudio(bool mute) {
  ORVA_JOURNAL(mute);
  media([&](auto& m) { m.audioMuted = mute; });
  p_.session.muteLocalAudio(mute);
}
void EngineImpl::sendSEIMsg(const char* message) {
  ORVA_JOURNAL(message);
  if (message != nullptr) media([](auto& m) { ++m.seiSent; });
}

rtc::MicrophoneList EngineImpl::getMicDevicesList() {
  ORVA_JOURNAL();
  return p_.device.microphones();
}
rtc::SpeakerList EngineImpl::getSpeakerDevicesList() {
  ORVA_JOURNAL();
  return p_.device.speakers();
}
rtc::CameraList EngineImpl::getCameraDevicesList() {
  ORVA_JOURNAL();
  return p_.device.cameras();
}
rtc::Microphone EngineImpl::getCurrentMicDevice() {
  ORVA_JOURNAL();
  return p_.device.currentMicrophone();
}
rtc::Microphone EngineImpl::getSystemMicDevice() {
  ORVA_JOURNAL();
  return p_.device.systemMicrophone();
}
rtc::Speaker EngineImpl::getCurrentSpeakerDevice() {
  ORVA_JOURNAL();
  return p_.device.currentSpeaker();
}
rtc::Speaker EngineImpl::getSystemSpeakerDevice() {
  ORVA_JOURNAL();
  return p_.device.systemSpeaker();
}
void EngineImpl::setCurrentMicDevice(const char* deviceId) {
  ORVA_JOURNAL(deviceId);
  p_.device.setMicrophone(text(deviceId));
}
void EngineImpl::setCurrentSpeakerDevice(const char* deviceId) {
  ORVA_JOURNAL(deviceId);
  p_.device.setSpeaker(text(deviceId));
}
void EngineImpl::setAudioCaptureVolume(int volume) {
  ORVA_JOURNAL(volume);
  p_.device.setMicrophoneVolume(volume);
}
void EngineImpl::setAudioPlayoutVolume(int volume) {
  ORVA_JOURNAL(volume);
  p_.device.setSpeakerVolume(volume);
}
void EngineImpl::setSystemAudioLoopbackVolume(int volume) {
  ORVA_JOURNAL(volume);
  p_.device.setLevel(&DeviceState::loopbackVolume, volume);
}
int EngineImpl::getCurrentMicDeviceVolume() {
  ORVA_JOURNAL();
  return get(&DeviceState::micVolume);
}
int EngineImpl::getSystemMicVolume() {
  ORVA_JOURNAL();
  return get(&DeviceState::systemMicVolume);
}
int EngineImpl::getCurrentSpeakerVolume() {
  ORVA_JOURNAL();
  return get(&DeviceState::speakerVolume);
}
int EngineImpl::getSystemSpeakerVolume() {
  ORVA_JOURNAL();
  return get(&DeviceState::systemSpeakerVolume);
}
bool EngineImpl::getCurrentMicDeviceMute() {
  ORVA_JOURNAL();
  return get(&DeviceState::micMute);
}
bool EngineImpl::getSystemMicMute() {
  ORVA_JOURNAL();
  return get(&DeviceState::micMute);
}
bool EngineImpl::getCurrentSpeakerDeviceMute() {
  ORVA_JOURNAL();
  return get(&DeviceState::speakerMute);
}
bool EngineImpl::getSystemSpeakerMute() {
  ORVA_JOURNAL();
  return get(&DeviceState::speakerMute);
}

void EngineImpl::setSystemAudioLoopbackDevice(const char* deviceName) {
  ORVA_JOURNAL(deviceName);
  set(&DeviceState::loopbackDevice, text(deviceName));
}
void EngineImpl::setSystemAudioLoopbackDevice() {
  ORVA_JOURNAL();
  set(&DeviceState::loopbackDevice, std::string());
}
// An empty name disables the loopback and stops a running one.
void EngineImpl::enableSystemAudioLoopback(const char* deviceName) {
  ORVA_JOURNAL(deviceName);
  const bool enable = deviceName != nullptr && *deviceName != '\0';
  p_.device.with([&](auto& s) {
    s.loopbackEnabled = enable;
    if (!enable) s.loopbackRunning = false;
  });
}
void EngineImpl::startSystemAudioLoopback() {
  ORVA_JOURNAL();
  p_.device.with([](auto& s) { s.loopbackRunning = s.loopbackEnabled; });
}

std::vector<rtc::Screen> EngineImpl::getScreenList() {
  ORVA_JOURNAL();
  return p_.device.screenVector();
}
std::vector<rtc::Window> EngineImpl::getWindowList() {
  ORVA_JOURNAL();
  return p_.device.windowVector();
}
void EngineImpl::updateScreenCaptureProperty(const char* sourceId, const rtc::ScreenCaptureProperty& property) {
  ORVA_JOURNAL(sourceId, property);
  p_.device.with([&](auto& s) { s.captureProperties[text(sourceId)] = property; });
}

void EngineImpl::setCameraVideoProcessor(rtc::VideoFrameProcessor* processor) {
  ORVA_JOURNAL(processor);
  p_.registry.set(processor);
}
void EngineImpl::startCameraSource(const char* cameraId) {
  ORVA_JOURNAL(cameraId);
  p_.device.startCameraSource(text(cameraId));
}
void EngineImpl::stopCameraSource(const char* cameraId) {
  ORVA_JOURNAL(cameraId);
  p_.device.stopCameraSource(text(cameraId));
}
void EngineImpl::setCameraCaptureParams(const char* cameraId, rtc::CameraCaptureParams& params) {
  ORVA_JOURNAL(cameraId, params);
  p_.device.setCaptureParams(text(cameraId), params);
}
void EngineImpl::enableCameraGreenScreen(const char* cameraId, const rtc::SourceGreenInfo& info) {
  ORVA_JOURNAL(cameraId, info);
  p_.device.with([&](auto& s) { s.greenScreens[text(cameraId)] = info; });
}
void EngineImpl::setVideoMuteImage(const char* imagePath, int fps) {
  ORVA_JOURNAL(imagePath, fps);
  media([&](auto& m) {
    m.muteImage = text(imagePath);
    m.muteImageFps = fps;
  });
}
bool EngineImpl::isSupportHevcEncode() {
  ORVA_JOURNAL();
  return false;
}

void EngineImpl::enableBeauty(const char* cameraId) {
  ORVA_JOURNAL(cameraId);
  media([&](auto& m) { m.beautyCameras.insert(text(cameraId)); });
}
void EngineImpl::disableBeauty(const char* cameraId) {
  ORVA_JOURNAL(cameraId);
  media([&](auto& m) { m.beautyCameras.erase(text(cameraId)); });
}
void EngineImpl::setBeautyParameter(const char* key, const char* value) {
  ORVA_JOURNAL(key, value);
  media([&](auto& m) { m.beautyParams[text(key)] = text(value); });
}

void EngineImpl::enableAudioAGC(bool enable, int level) {
  ORVA_JOURNAL(enable, level);
  p_.device.with([&](auto& s) {
    s.agc = enable;
    s.agcLevel = level;
  });
}
void EngineImpl::enableAudioANS(bool enable, int level) {
  ORVA_JOURNAL(enable, level);
  p_.device.with([&](auto& s) {
    s.ans = enable;
    s.ansLevel = level;
  });
}
void EngineImpl::enableAudioAEC(bool enable) {
  ORVA_JOURNAL(enable);
  set(&DeviceState::aec, enable);
}
void EngineImpl::enableStereoMicrophone(bool enable) {
  ORVA_JOURNAL(enable);
  set(&DeviceState::stereo, enable);
}
bool EngineImpl::getAGCStatus() {
  ORVA_JOURNAL();
  return get(&DeviceState::agc);
}
bool EngineImpl::getAECStatus() {
  ORVA_JOURNAL();
  return get(&DeviceState::aec);
}
bool EngineImpl::getANSStatus() {
  ORVA_JOURNAL();
  return get(&DeviceState::ans);
}
bool EngineImpl::getStereoMicrophoneStatus() {
  ORVA_JOURNAL();
  return get(&DeviceState::stereo);
}
void EngineImpl::enableAudioCaptureFixDelay(bool enable, int delayMs) {
  ORVA_JOURNAL(enable, delayMs);
  p_.device.with([&](auto& s) {
    s.fixDelay = enable;
    s.fixDelayMs = delayMs;
  });
}

void EngineImpl::removeEventHandler(rtc::OrvaEngineListener* listener, rtc::VideoFrameProcessor* processor) {
  ORVA_JOURNAL(listener, processor);
  p_.forget(listener, processor);
}

}  // namespace orva::loopback
