// OrvaEngine's own operations from Initialize on (the device and channel
// members come from the mixins).
#include "core.h"

namespace orva::loopback {

int EngineImpl::Initialize(rtc::Settings* settings, rtc::OrvaEngineListener* listener, void* reserved1,
                           void* reserved2) {
  ORVA_JOURNAL(settings, listener, reserved1, reserved2);
  return start(settings, listener);
}
int EngineImpl::Initialize(rtc::Settings* settings) {
  ORVA_JOURNAL(settings);
  p_.start(settings);
  return 0;
}
int EngineImpl::Initialize(rtc::Settings* settings, rtc::ILocalMediaTranscoderCallback* callback) {
  ORVA_JOURNAL(settings, callback);
  p_.start(settings);
  p_.registry.set(callback);
  return rtc::Init_Successd;
}
int EngineImpl::Initialize(rtc::Settings* settings, rtc::OrvaEngineListener* listener) {
  ORVA_JOURNAL(settings, listener);
  return start(settings, listener);
}
void EngineImpl::Terminate() {
  ORVA_JOURNAL();
  p_.stop();
}
const char* EngineImpl::GetVersion() {
  ORVA_JOURNAL();
  return kEngineVersion;
}

rtc::IMediaService* EngineImpl::MediaService() {
  ORVA_JOURNAL();
  return &core_.service;
}
rtc::MediaChannel* EngineImpl::RealtimeChannel() {
  ORVA_JOURNAL();
  return &core_.realtime;
}
rtc::MediaChannel* EngineImpl::LiveChannel() {
  ORVA_JOURNAL();
  return &core_.live;
}
rtc::MediaChannel* EngineImpl::LightLiveChannel() {
  ORVA_JOURNAL();
  return &core_.lightLive;
}
rtc::MediaChannel* EngineImpl::GroupChannel() {
  ORVA_JOURNAL();
  return &core_.group;
}
rtc::MediaDevice* EngineImpl::Device() {
  ORVA_JOURNAL();
  return &core_.device;
}
rtc::AudioService* EngineImpl::Audio() {
  ORVA_JOURNAL();
  return &core_.audio;
}
rtc::LocalMediaTranscoder* EngineImpl::MediaTranscoder() {
  ORVA_JOURNAL();
  return &core_.transcoder;
}
rtc::IBeautyEngine* EngineImpl::BeautyEngine() {
  ORVA_JOURNAL();
  return &core_.beauty;
}

int EngineImpl::JoinSession(const char* session, rtc::Settings* settings) {
  ORVA_JOURNAL(session, settings);
  return p_.session.join(session, settings);
}
void EngineImpl::LeaveSession() {
  ORVA_JOURNAL();
  p_.session.leave();
}
int EngineImpl::JoinGroup(const char* group, rtc::Settings* settings) {
  ORVA_JOURNAL(group, settings);
  return p_.session.joinGroup(group);
}
void EngineImpl::LeaveGroup() {
  ORVA_JOURNAL();
  p_.session.leaveGroup();
}
int EngineImpl::LastError() {
  ORVA_JOURNAL();
  return p_.session.lastError();
}

// The one-argument forms keep the level set last.
void EngineImpl::EnableAudioAGC(bool enable) {
  ORVA_JOURNAL(enable);
  set(&DeviceState::agc, enable);
}
void EngineImpl::EnableAudioANS(bool enable) {
  ORVA_JOURNAL(enable);
  set(&DeviceState::ans, enable);
}

int EngineImpl::StartRender(void* window) {
  ORVA_JOURNAL(window);
  media([&](auto& m) { m.localRenderView = window; });
  return kOk;
}
int EngineImpl::UpdateRenderSetting(const char* userId, void* window, rtc::Settings* settings) {
  ORVA_JOURNAL(userId, window, settings);
  return userId != nullptr ? kOk : kInvalidArgument;
}
void EngineImpl::StopRender() {
  ORVA_JOURNAL();
  media([](auto& m) { m.localRenderView = nullptr; });
}

void EngineImpl::StartPlayFile(int fileId, const rtc::AudioFileParam* param) {
  ORVA_JOURNAL(fileId, param);
  p_.files.start(fileId, param);
}
void EngineImpl::PauseFile(int fileId) {
  ORVA_JOURNAL(fileId);
  p_.files.pause(fileId);
}
void EngineImpl::ResumeFile(int fileId) {
  ORVA_JOURNAL(fileId);
  p_.files.resume(fileId);
}
void EngineImpl::StopPlayFile(int fileId) {
  ORVA_JOURNAL(fileId);
  p_.files.stop(fileId);
}
void EngineImpl::SeekFile(int fileId, int positionMs) {
  ORVA_JOURNAL(fileId, positionMs);
  p_.files.seek(fileId, positionMs);
}
void EngineImpl::SetFileAllVolume(int volume) { ORVA_JOURNAL(volume); }
void EngineImpl::SetFilePublishVolume(int fileId, int volume) { ORVA_JOURNAL(fileId, volume); }
void EngineImpl::SetFileLocalVolume(int fileId, int volume) { ORVA_JOURNAL(fileId, volume); }
int EngineImpl::GetFilePos(int fileId) {
  ORVA_JOURNAL(fileId);
  return p_.files.position(fileId);
}
int EngineImpl::GetFileDuration(const char* path) {
  ORVA_JOURNAL(path);
  return p_.files.duration(path);
}

int EngineImpl::StartLive(const char* url) {
  ORVA_JOURNAL(url);
  return startLive(p_, url);
}
void EngineImpl::StopLive() {
  ORVA_JOURNAL();
  stopLive(p_);
}

void EngineImpl::startTranscoding(const rtc::LocalMediaTranscodingParams& params) {
  ORVA_JOURNAL(params);
  p_.transcoder.start(params);
}
void EngineImpl::updateTranscodingParams(const rtc::LocalMediaTranscodingParams& params) {
  ORVA_JOURNAL(params);
  p_.transcoder.update(params);
}
void EngineImpl::stopTranscoding() {
  ORVA_JOURNAL();
  p_.transcoder.stop();
}
void EngineImpl::addImageSource(const std::string& imagePath, int zOrder) {
  ORVA_JOURNAL(imagePath, zOrder);
  p_.transcoder.addImage(imagePath, zOrder);
}
void EngineImpl::removeImageSource(const std::string& imagePath) {
  ORVA_JOURNAL(imagePath);
  p_.transcoder.removeImage(imagePath);
}
void EngineImpl::setMixedVideoRenderView(void* window) {
  ORVA_JOURNAL(window);
  media([&](auto& m) { m.mixedView = window; });
}
void EngineImpl::setRenderFPS(int fps) {
  ORVA_JOURNAL(fps);
  media([&](auto& m) { m.renderFps = fps; });
}
bool EngineImpl::IsSupportHevcEncode() {
  ORVA_JOURNAL();
  return false;
}

void EngineImpl::EnableBeauty(const std::string& cameraId) {
  ORVA_JOURNAL(cameraId);
  media([&](auto& m) { m.beautyCameras.insert(cameraId); });
}
void EngineImpl::SetBeautyParam(const std::string& key, const std::string& value) {
  ORVA_JOURNAL(key, value);
  media([&](auto& m) { m.beautyParams[key] = value; });
}
void EngineImpl::DisableBeauty(const std::string& cameraId) {
  ORVA_JOURNAL(cameraId);
  media([&](auto& m) { m.beautyCameras.erase(cameraId); });
}
void EngineImpl::enableBeautyParameter(const std::string& cameraId, const rtc::BeautyInfo& info) {
  ORVA_JOURNAL(cameraId, info);
  media([&](auto& m) { m.beautyInfo[cameraId] = info; });
}
void EngineImpl::updateRtmpUrl(const std::string& url) {
  ORVA_JOURNAL(url);
  media([&](auto& m) { m.rtmpUrl = url; });
}
int EngineImpl::startRenderVideo(const std::string& userId, void* window, int mode) {
  ORVA_JOURNAL(userId, window, mode);
  return toggle(&MediaState::renders, userId.c_str(), true);
}
void EngineImpl::stopRenderVideo(const std::string& userId) {
  ORVA_JOURNAL(userId);
  toggle(&MediaState::renders, userId.c_str(), false);
}
void EngineImpl::stopAllRenderVideo() {
  ORVA_JOURNAL();
  media([](auto& m) { m.renders.clear(); });
}
int EngineImpl::startPlayAudio(const std::string& userId) {
  ORVA_JOURNAL(userId);
  return toggle(&MediaState::playouts, userId.c_str(), true);
}
void EngineImpl::stopPlayAudio(const std::string& userId) {
  ORVA_JOURNAL(userId);
  toggle(&MediaState::playouts, userId.c_str(), false);
}
void EngineImpl::stopAllPlayAudio() {
  ORVA_JOURNAL();
  media([](auto& m) { m.playouts.clear(); });
}
void EngineImpl::enableBeautySkinSeg(const std::string& cameraId, bool enable) {
  ORVA_JOURNAL(cameraId, enable);
  media([&](auto& m) { m.skinSegmentation[cameraId] = enable; });
}
void EngineImpl::setBeautyFace2DPath(const std::string& path) {
  ORVA_JOURNAL(path);
  media([&](auto& m) { m.face2DPath = path; });
}
void EngineImpl::startRemoteTranscoding(const rtc::LocalMediaTranscodingParams& params) {
  ORVA_JOURNAL(params);
  media([](auto& m) { m.remoteTranscoding = true; });
}
void EngineImpl::updateRemoteTranscodingParams(const rtc::LocalMediaTranscodingParams& params) { ORVA_JOURNAL(params); }
void EngineImpl::stopRemoteTranscoding() {
  ORVA_JOURNAL();
  media([](auto& m) { m.remoteTranscoding = false; });
}
void EngineImpl::setRemoteVideoRenderView(void* window) {
  ORVA_JOURNAL(window);
  media([&](auto& m) { m.remoteView = window; });
}
void EngineImpl::startEchoTest(rtc::EchoCheckType type) {
  ORVA_JOURNAL(type);
  p_.session.startEcho(type);
}
void EngineImpl::stopEchoTest(rtc::EchoCheckType type) {
  ORVA_JOURNAL(type);
  p_.session.stopEcho(type);
}

// No graphics adapter shares textures with the loopback.
rtc::AdapterInfo EngineImpl::GetAdapterInfo() {
  ORVA_JOURNAL();
  return {"Loopback Display Adapter", 0, 0, 0};
}

int RtcEngineImpl::Initialize(rtc::RtcEngineListener* listener) {
  ORVA_JOURNAL(listener);
  core_.parts.start(nullptr);
  core_.parts.registry.set(listener);
  return rtc::Init_Successd;
}
void RtcEngineImpl::Terminate() {
  ORVA_JOURNAL();
  core_.parts.stop();
}
const char* RtcEngineImpl::GetVersion() {
  ORVA_JOURNAL();
  return kEngineVersion;
}
rtc::IMediaService* RtcEngineImpl::MediaService() {
  ORVA_JOURNAL();
  return &core_.service;
}

}  // namespace orva::loopback
