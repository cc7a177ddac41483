// The wrapper's operations that forward to the engine operation of the same
// name, each answering a fixed value when there is no engine yet.
#include "facade/orva_engine_wrapper.h"

namespace Orva::Rtc {
namespace {

// A device record when there is no engine: no name, no id, no index.
template <class Device>
Device noDevice() {
  Device device;
  device.index = -1;
  return device;
}

}  // namespace

int OrvaEngineWrapper::getLastError() {
  return forward(-100, [](OrvaEngine& e) { return e.getLastError(); });
}

void OrvaEngineWrapper::publishAudio(AudioSource source) {
  forward([&](OrvaEngine& e) { e.publishAudio(source); });
}
void OrvaEngineWrapper::unPublishAudio() {
  forward([](OrvaEngine& e) { e.unPublishAudio(); });
}
void OrvaEngineWrapper::publishVideo(VideoSource source) {
  forward([&](OrvaEngine& e) { e.publishVideo(source); });
}
void OrvaEngineWrapper::unPublishVideo() {
  forward([](OrvaEngine& e) { e.unPublishVideo(); });
}
void OrvaEngineWrapper::muteLocalAudio(bool mute) {
  forward([&](OrvaEngine& e) { e.muteLocalAudio(mute); });
}

MicrophoneList OrvaEngineWrapper::getMicDevicesList() {
  return forward(MicrophoneList(), [](OrvaEngine& e) { return e.getMicDevicesList(); });
}
SpeakerList OrvaEngineWrapper::getSpeakerDevicesList() {
  return forward(SpeakerList(), [](OrvaEngine& e) { return e.getSpeakerDevicesList(); });
}
CameraList OrvaEngineWrapper::getCameraDevicesList() {
  return forward(CameraList(), [](OrvaEngine& e) { return e.getCameraDevicesList(); });
}
Microphone OrvaEngineWrapper::getCurrentMicDevice() {
  return forward(noDevice<Microphone>(), [](OrvaEngine& e) { return e.getCurrentMicDevice(); });
}
Microphone OrvaEngineWrapper::getSystemMicDevice() {
  return forward(noDevice<Microphone>(), [](OrvaEngine& e) { return e.getSystemMicDevice(); });
}
Speaker OrvaEngineWrapper::getCurrentSpeakerDevice() {
  return forward(noDevice<Speaker>(), [](OrvaEngine& e) { return e.getCurrentSpeakerDevice(); });
}
Speaker OrvaEngineWrapper::getSystemSpeakerDevice() {
  return forward(noDevice<Speaker>(), [](OrvaEngine& e) { return e.getSystemSpeakerDevice(); });
}
void OrvaEngineWrapper::setCurrentMicDevice(const std::string& deviceId) {
  forward([&](OrvaEngine& e) { e.setCurrentMicDevice(deviceId.c_str()); });
}
void OrvaEngineWrapper::setCurrentSpeakerDevice(const std::string& deviceId) {
  forward([&](OrvaEngine& e) { e.setCurrentSpeakerDevice(deviceId.c_str()); });
}
void OrvaEngineWrapper::setAudioCaptureVolume(int volume) {
  forward([&](OrvaEngine& e) { e.setAudioCaptureVolume(volume); });
}
void OrvaEngineWrapper::setAudioPlayoutVolume(int volume) {
  forward([&](OrvaEngine& e) { e.setAudioPlayoutVolume(volume); });
}
void OrvaEngineWrapper::setSystemAudioLoopbackVolume(int volume) {
  forward([&](OrvaEngine& e) { e.setSystemAudioLoopbackVolume(volume); });
}
int OrvaEngineWrapper::getCurrentMicDeviceVolume() {
  return forward(0, [](OrvaEngine& e) { return e.getCurrentMicDeviceVolume(); });
}
int OrvaEngineWrapper::getSystemMicVolume() {
  return forward(0, [](OrvaEngine& e) { return e.getSystemMicVolume(); });
}
int OrvaEngineWrapper::getCurrentSpeakerVolume() {
  return forward(0, [](OrvaEngine& e) { return e.getCurrentSpeakerVolume(); });
}
int OrvaEngineWrapper::getSystemSpeakerVolume() {
  return forward(0, [](OrvaEngine& e) { return e.getSystemSpeakerVolume(); });
}
bool OrvaEngineWrapper::getCurrentMicDeviceMute() {
  return forward(false, [](OrvaEngine& e) { return e.getCurrentMicDeviceMute(); });
}
bool OrvaEngineWrapper::getSystemMicMute() {
  return forward(false, [](OrvaEngine& e) { return e.getSystemMicMute(); });
}
bool OrvaEngineWrapper::getCurrentSpeakerDeviceMute() {
  return forward(false, [](OrvaEngine& e) { return e.getCurrentSpeakerDeviceMute(); });
}
bool OrvaEngineWrapper::getSystemSpeakerMute() {
  return forward(false, [](OrvaEngine& e) { return e.getSystemSpeakerMute(); });
}

void OrvaEngineWrapper::setCameraVideoProcessor(VideoFrameProcessor* processor) {
  forward([&](OrvaEngine& e) { e.setCameraVideoProcessor(processor); });
}
void OrvaEngineWrapper::setMixedVideoRenderView(void* window) {
  forward([&](OrvaEngine& e) { e.setMixedVideoRenderView(window); });
}
void OrvaEngineWrapper::setRemoteVideoRenderView(void* window) {
  forward([&](OrvaEngine& e) { e.setRemoteVideoRenderView(window); });
}
void OrvaEngineWrapper::startRenderVideo(const std::string& userId, void* window, int mode) {
  forward([&](OrvaEngine& e) { e.startRenderVideo(userId, window, mode); });
}
void OrvaEngineWrapper::stopRenderVideo(const std::string& userId) {
  forward([&](OrvaEngine& e) { e.stopRenderVideo(userId); });
}
void OrvaEngineWrapper::stopAllRenderVideo() {
  forward([](OrvaEngine& e) { e.stopAllRenderVideo(); });
}
void OrvaEngineWrapper::startPlayAudio(const std::string& userId) {
  forward([&](OrvaEngine& e) { e.startPlayAudio(userId); });
}
void OrvaEngineWrapper::stopPlayAudio(const std::string& userId) {
  forward([&](OrvaEngine& e) { e.stopPlayAudio(userId); });
}
void OrvaEngineWrapper::stopAllPlayAudio() {
  forward([](OrvaEngine& e) { e.stopAllPlayAudio(); });
}
void OrvaEngineWrapper::setRenderFPS(int fps) {
  forward([&](OrvaEngine& e) { e.setRenderFPS(fps); });
}

bool OrvaEngineWrapper::isSupportHevcEncode() {
  return forward(false, [](OrvaEngine& e) { return e.isSupportHevcEncode(); });
}
AdapterInfo OrvaEngineWrapper::GetAdapterInfo() {
  return forward(AdapterInfo(), [](OrvaEngine& e) { return e.GetAdapterInfo(); });
}

void OrvaEngineWrapper::updateTranscodingParams(const LocalMediaTranscodingParams& params) {
  forward([&](OrvaEngine& e) { e.updateTranscodingParams(params); });
}
void OrvaEngineWrapper::stopTranscoding() {
  forward([](OrvaEngine& e) { e.stopTranscoding(); });
}
void OrvaEngineWrapper::startRemoteTranscoding(const LocalMediaTranscodingParams& params) {
  forward([&](OrvaEngine& e) { e.startRemoteTranscoding(params); });
}
void OrvaEngineWrapper::updateRemoteTranscodingParams(const LocalMediaTranscodingParams& params) {
  forward([&](OrvaEngine& e) { e.updateRemoteTranscodingParams(params); });
}
void OrvaEngineWrapper::stopRemoteTranscoding() {
  forward([](OrvaEngine& e) { e.stopRemoteTranscoding(); });
}
void OrvaEngineWrapper::startCameraSource(const std::string& cameraId) {
  forward([&](OrvaEngine& e) { e.startCameraSource(cameraId.c_str()); });
}
void OrvaEngineWrapper::stopCameraSource(const std::string& cameraId) {
  forward([&](OrvaEngine& e) { e.stopCameraSource(cameraId.c_str()); });
}
void OrvaEngineWrapper::startCameraSourceWithCaptureParams(const std::string& cameraId, CameraCaptureParams& params) {
  forward([&](OrvaEngine& e) { e.startCameraSourceWithCaptureParams(cameraId, params); });
}
void OrvaEngineWrapper::setCameraCaptureParams(const std::string& cameraId, CameraCaptureParams& params) {
  forward([&](OrvaEngine& e) { e.setCameraCaptureParams(cameraId.c_str(), params); });
}
void OrvaEngineWrapper::addImageSource(const std::string& imagePath, int zOrder) {
  forward([&](OrvaEngine& e) { e.addImageSource(imagePath, zOrder); });
}
void OrvaEngineWrapper::removeImageSource(const std::string& imagePath) {
  forward([&](OrvaEngine& e) { e.removeImageSource(imagePath); });
}
void OrvaEngineWrapper::setVideoMuteImage(const std::string& imagePath, int fps) {
  forward([&](OrvaEngine& e) { e.setVideoMuteImage(imagePath.c_str(), fps); });
}
void OrvaEngineWrapper::enableCameraGreenScreen(const std::string& cameraId, const SourceGreenInfo& info) {
  forward([&](OrvaEngine& e) { e.enableCameraGreenScreen(cameraId.c_str(), info); });
}
void OrvaEngineWrapper::enableCameraVideoProcessor(bool enable) {
  forward([&](OrvaEngine& e) { e.enableCameraVideoProcessor(enable); });
}
void OrvaEngineWrapper::enableCameraVideoYuvOutput(bool enable) {
  forward([&](OrvaEngine& e) { e.enableCameraVideoYuvOutput(enable); });
}
void OrvaEngineWrapper::startCameraRecord(const std::string& cameraId, const CameraRecordInfo& info) {
  forward([&](OrvaEngine& e) { e.startCameraRecord(cameraId, info); });
}
void OrvaEngineWrapper::stopCameraRecord(const std::string& cameraId) {
  forward([&](OrvaEngine& e) { e.stopCameraRecord(cameraId); });
}

void OrvaEngineWrapper::disableBeauty(const std::string& cameraId) {
  forward([&](OrvaEngine& e) { e.disableBeauty(cameraId.c_str()); });
}
void OrvaEngineWrapper::setBeautyParameter(const std::string& key, const std::string& value) {
  forward([&](OrvaEngine& e) { e.setBeautyParameter(key.c_str(), value.c_str()); });
}
void OrvaEngineWrapper::enableBeautySkinSeg(const std::string& cameraId, bool enable) {
  forward([&](OrvaEngine& e) { e.enableBeautySkinSeg(cameraId, enable); });
}
void OrvaEngineWrapper::setBeautyFace2DPath(const std::string& path) {
  forward([&](OrvaEngine& e) { e.setBeautyFace2DPath(path); });
}

void OrvaEngineWrapper::enableAudioAGC(bool enable, int level) {
  forward([&](OrvaEngine& e) { e.enableAudioAGC(enable, level); });
}
void OrvaEngineWrapper::enableAudioANS(bool enable, int level) {
  forward([&](OrvaEngine& e) { e.enableAudioANS(enable, level); });
}
void OrvaEngineWrapper::enableAudioAEC(bool enable) {
  forward([&](OrvaEngine& e) { e.enableAudioAEC(enable); });
}
void OrvaEngineWrapper::enableStereoMicrophone(bool enable) {
  forward([&](OrvaEngine& e) { e.enableStereoMicrophone(enable); });
}
bool OrvaEngineWrapper::getAGCStatus() {
  return forward(false, [](OrvaEngine& e) { return e.getAGCStatus(); });
}
bool OrvaEngineWrapper::getAECStatus() {
  return forward(false, [](OrvaEngine& e) { return e.getAECStatus(); });
}
bool OrvaEngineWrapper::getANSStatus() {
  return forward(false, [](OrvaEngine& e) { return e.getANSStatus(); });
}
bool OrvaEngineWrapper::getStereoMicrophoneStatus() {
  return forward(false, [](OrvaEngine& e) { return e.getStereoMicrophoneStatus(); });
}
void OrvaEngineWrapper::enableAudioCaptureFixDelay(bool enable, int delayMs) {
  forward([&](OrvaEngine& e) { e.enableAudioCaptureFixDelay(enable, delayMs); });
}

void OrvaEngineWrapper::createTraceWindow(int x, int y, const std::string& title, bool topMost, int flags) {
  forward([&](OrvaEngine& e) { e.createTraceWindow(x, y, title, topMost, flags); });
}
void OrvaEngineWrapper::destroyTraceWindow() {
  forward([](OrvaEngine& e) { e.destroyTraceWindow(); });
}
void OrvaEngineWrapper::updateRtmpUrl(const std::string& url) {
  forward([&](OrvaEngine& e) { e.updateRtmpUrl(url); });
}
void OrvaEngineWrapper::startEchoTest(EchoCheckType type) {
  forward([&](OrvaEngine& e) { e.startEchoTest(type); });
}
void OrvaEngineWrapper::stopEchoTest(EchoCheckType type) {
  forward([&](OrvaEngine& e) { e.stopEchoTest(type); });
}

}  // namespace Orva::Rtc
