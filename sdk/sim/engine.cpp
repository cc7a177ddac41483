// OrvaEngine's own operations from Initialize on (the device and channel
// members come from the mixins).
#include "core.h"

namespace orva::loopback {

int EngineImpl::Initialize(rtc::Settings* settings, rtc::OrvaEngineListener* listener, void* reserved1,
                           void* reserved2) {
  return call("Initialize", settings, listener, reserved1, reserved2), start(settings, listener);
}
int EngineImpl::Initialize(rtc::Settings* settings) { return call("Initialize", settings), p_.start(settings), 0; }
int EngineImpl::Initialize(rtc::Settings* settings, rtc::ILocalMediaTranscoderCallback* callback) {
  call("Initialize", settings, callback);
  p_.start(settings);
  p_.registry.set(callback);
  return rtc::Init_Successd;
}
int EngineImpl::Initialize(rtc::Settings* settings, rtc::OrvaEngineListener* listener) {
  return call("Initialize", settings, listener), start(settings, listener);
}
void EngineImpl::Terminate() { call("Terminate"), p_.stop(); }
const char* EngineImpl::GetVersion() { return call("GetVersion"), kEngineVersion; }

rtc::IMediaService* EngineImpl::MediaService() { return call("MediaService"), &core_.service; }
rtc::MediaChannel* EngineImpl::RealtimeChannel() { return call("RealtimeChannel"), &core_.realtime; }
rtc::MediaChannel* EngineImpl::LiveChannel() { return call("LiveChannel"), &core_.live; }
rtc::MediaChannel* EngineImpl::LightLiveChannel() { return call("LightLiveChannel"), &core_.lightLive; }
rtc::MediaChannel* EngineImpl::GroupChannel() { return call("GroupChannel"), &core_.group; }
rtc::MediaDevice* EngineImpl::Device() { return call("Device"), &core_.device; }
rtc::AudioService* EngineImpl::Audio() { return call("Audio"), &core_.audio; }
rtc::LocalMediaTranscoder* EngineImpl::MediaTranscoder() { return call("MediaTranscoder"), &core_.transcoder; }
rtc::IBeautyEngine* EngineImpl::BeautyEngine() { return call("BeautyEngine"), &core_.beauty; }

int EngineImpl::JoinSession(const char* session, rtc::Settings* settings) {
  return call("JoinSession", session, settings), p_.session.join(session, settings);
}
void EngineImpl::LeaveSession() { call("LeaveSession"), p_.session.leave(); }
int EngineImpl::JoinGroup(const char* group, rtc::Settings* settings) {
  return call("JoinGroup", group, settings), p_.session.joinGroup(group);
}
void EngineImpl::LeaveGroup() { call("LeaveGroup"), p_.session.leaveGroup(); }
int EngineImpl::LastError() { return call("LastError"), p_.session.lastError(); }

// The one-argument forms keep the level set last.
void EngineImpl::EnableAudioAGC(bool enable) { call("EnableAudioAGC", enable), set(&DeviceState::agc, enable); }
void EngineImpl::EnableAudioANS(bool enable) { call("EnableAudioANS", enable), set(&DeviceState::ans, enable); }

int EngineImpl::StartRender(void* window) {
  return call("StartRender", window), media([&](auto& m) { return m.localRenderView = window, kOk; });
}
int EngineImpl::UpdateRenderSetting(const char* userId, void* window, rtc::Settings* settings) {
  call("UpdateRenderSetting", userId, window, settings);
  return userId != nullptr ? kOk : kInvalidArgument;
}
void EngineImpl::StopRender() {
  call("StopRender"), media([](auto& m) { m.localRenderView = nullptr; });
}

void EngineImpl::StartPlayFile(int fileId, const rtc::AudioFileParam* param) {
  call("StartPlayFile", fileId, param), p_.files.start(fileId, param);
}
void EngineImpl::PauseFile(int fileId) { call("PauseFile", fileId), p_.files.pause(fileId); }
void EngineImpl::ResumeFile(int fileId) { call("ResumeFile", fileId), p_.files.resume(fileId); }
void EngineImpl::StopPlayFile(int fileId) { call("StopPlayFile", fileId), p_.files.stop(fileId); }
void EngineImpl::SeekFile(int fileId, int positionMs) {
  call("SeekFile", fileId, positionMs), p_.files.seek(fileId, positionMs);
}
void EngineImpl::SetFileAllVolume(int volume) { call("SetFileAllVolume", volume); }
void EngineImpl::SetFilePublishVolume(int fileId, int volume) { call("SetFilePublishVolume", fileId, volume); }
void EngineImpl::SetFileLocalVolume(int fileId, int volume) { call("SetFileLocalVolume", fileId, volume); }
int EngineImpl::GetFilePos(int fileId) { return call("GetFilePos", fileId), p_.files.position(fileId); }
int EngineImpl::GetFileDuration(const char* path) { return call("GetFileDuration", path), p_.files.duration(path); }

int EngineImpl::StartLive(const char* url) { return call("StartLive", url), startLive(p_, url); }
void EngineImpl::StopLive() { call("StopLive"), stopLive(p_); }

void EngineImpl::startTranscoding(const rtc::LocalMediaTranscodingParams& params) {
  call("startTranscoding", params), p_.transcoder.start(params);
}
void EngineImpl::updateTranscodingParams(const rtc::LocalMediaTranscodingParams& params) {
  call("updateTranscodingParams", params), p_.transcoder.update(params);
}
void EngineImpl::stopTranscoding() { call("stopTranscoding"), p_.transcoder.stop(); }
void EngineImpl::addImageSource(const std::string& imagePath, int zOrder) {
  call("addImageSource", imagePath, zOrder), p_.transcoder.addImage(imagePath, zOrder);
}
void EngineImpl::removeImageSource(const std::string& imagePath) {
  call("removeImageSource", imagePath), p_.transcoder.removeImage(imagePath);
}
void EngineImpl::setMixedVideoRenderView(void* window) {
  call("setMixedVideoRenderView", window), media([&](auto& m) { m.mixedView = window; });
}
void EngineImpl::setRenderFPS(int fps) {
  call("setRenderFPS", fps), media([&](auto& m) { m.renderFps = fps; });
}
bool EngineImpl::IsSupportHevcEncode() { return call("IsSupportHevcEncode"), false; }

void EngineImpl::EnableBeauty(const std::string& cameraId) {
  call("EnableBeauty", cameraId), media([&](auto& m) { m.beautyCameras.insert(cameraId); });
}
void EngineImpl::SetBeautyParam(const std::string& key, const std::string& value) {
  call("SetBeautyParam", key, value), media([&](auto& m) { m.beautyParams[key] = value; });
}
void EngineImpl::DisableBeauty(const std::string& cameraId) {
  call("DisableBeauty", cameraId), media([&](auto& m) { m.beautyCameras.erase(cameraId); });
}
void EngineImpl::enableBeautyParameter(const std::string& cameraId, const rtc::BeautyInfo& info) {
  call("enableBeautyParameter", cameraId, info), media([&](auto& m) { m.beautyInfo[cameraId] = info; });
}
void EngineImpl::updateRtmpUrl(const std::string& url) {
  call("updateRtmpUrl", url), media([&](auto& m) { m.rtmpUrl = url; });
}
int EngineImpl::startRenderVideo(const std::string& userId, void* window, int mode) {
  return call("startRenderVideo", userId, window, mode), toggle(&MediaState::renders, userId.c_str(), true);
}
void EngineImpl::stopRenderVideo(const std::string& userId) {
  call("stopRenderVideo", userId), toggle(&MediaState::renders, userId.c_str(), false);
}
void EngineImpl::stopAllRenderVideo() {
  call("stopAllRenderVideo"), media([](auto& m) { m.renders.clear(); });
}
int EngineImpl::startPlayAudio(const std::string& userId) {
  return call("startPlayAudio", userId), toggle(&MediaState::playouts, userId.c_str(), true);
}
void EngineImpl::stopPlayAudio(const std::string& userId) {
  call("stopPlayAudio", userId), toggle(&MediaState::playouts, userId.c_str(), false);
}
void EngineImpl::stopAllPlayAudio() {
  call("stopAllPlayAudio"), media([](auto& m) { m.playouts.clear(); });
}
void EngineImpl::enableBeautySkinSeg(const std::string& cameraId, bool enable) {
  call("enableBeautySkinSeg", cameraId, enable), media([&](auto& m) { m.skinSegmentation[cameraId] = enable; });
}
void EngineImpl::setBeautyFace2DPath(const std::string& path) {
  call("setBeautyFace2DPath", path), media([&](auto& m) { m.face2DPath = path; });
}
void EngineImpl::startRemoteTranscoding(const rtc::LocalMediaTranscodingParams& params) {
  call("startRemoteTranscoding", params), media([](auto& m) { m.remoteTranscoding = true; });
}
void EngineImpl::updateRemoteTranscodingParams(const rtc::LocalMediaTranscodingParams& params) {
  call("updateRemoteTranscodingParams", params);
}
void EngineImpl::stopRemoteTranscoding() {
  call("stopRemoteTranscoding"), media([](auto& m) { m.remoteTranscoding = false; });
}
void EngineImpl::setRemoteVideoRenderView(void* window) {
  call("setRemoteVideoRenderView", window), media([&](auto& m) { m.remoteView = window; });
}
void EngineImpl::startEchoTest(rtc::EchoCheckType type) { call("startEchoTest", type), p_.session.startEcho(type); }
void EngineImpl::stopEchoTest(rtc::EchoCheckType type) { call("stopEchoTest", type), p_.session.stopEcho(type); }

// No graphics adapter shares textures with the loopback.
rtc::AdapterInfo EngineImpl::GetAdapterInfo() {
  call("GetAdapterInfo");
  return {"Loopback Display Adapter", 0, 0, 0};
}

int RtcEngineImpl::Initialize(rtc::RtcEngineListener* listener) {
  noteCall("RtcEngine", "Initialize", listener);
  core_.parts.start(nullptr);
  core_.parts.registry.set(listener);
  return rtc::Init_Successd;
}
void RtcEngineImpl::Terminate() { noteCall("RtcEngine", "Terminate"), core_.parts.stop(); }
const char* RtcEngineImpl::GetVersion() { return noteCall("RtcEngine", "GetVersion"), kEngineVersion; }
rtc::IMediaService* RtcEngineImpl::MediaService() { return noteCall("RtcEngine", "MediaService"), &core_.service; }

}  // namespace orva::loopback
