#include "core.h"

namespace orva::loopback {

namespace {
constexpr const char* kName = "IMediaService";
}

rtc::MediaChannel* MediaServiceImpl::RealtimeChannel() { return noteCall(kName, "RealtimeChannel"), &core_.realtime; }
rtc::MediaChannel* MediaServiceImpl::LiveChannel() { return noteCall(kName, "LiveChannel"), &core_.live; }
rtc::MediaChannel* MediaServiceImpl::LightLiveChannel() {
  return noteCall(kName, "LightLiveChannel"), &core_.lightLive;
}
rtc::MediaChannel* MediaServiceImpl::GroupChannel() { return noteCall(kName, "GroupChannel"), &core_.group; }
rtc::MediaChannel* MediaServiceImpl::FusionLiveRtcChannel() {
  return noteCall(kName, "FusionLiveRtcChannel"), &core_.fusion;
}
rtc::MediaDevice* MediaServiceImpl::Device() { return noteCall(kName, "Device"), &core_.device; }
rtc::AudioService* MediaServiceImpl::Audio() { return noteCall(kName, "Audio"), &core_.audio; }
rtc::MediaLive* MediaServiceImpl::Live() { return noteCall(kName, "Live"), &core_.livePush; }
rtc::LocalMediaTranscoder* MediaServiceImpl::MediaTranscoder() {
  return noteCall(kName, "MediaTranscoder"), &core_.transcoder;
}
rtc::IBeautyEngine* MediaServiceImpl::BeautyEngine() { return noteCall(kName, "BeautyEngine"), &core_.beauty; }

int MediaServiceImpl::JoinSession(const char* session, rtc::Settings* settings) {
  return noteCall(kName, "JoinSession", session, settings), core_.parts.session.join(session, settings);
}
void MediaServiceImpl::LeaveSession() { noteCall(kName, "LeaveSession"), core_.parts.session.leave(); }

int MediaServiceImpl::Initialize(rtc::Settings* settings, rtc::MediaServiceListener* listener, void* reserved1,
                                 void* reserved2) {
  noteCall(kName, "Initialize", settings, listener, reserved1, reserved2);
  core_.parts.start(settings);
  core_.parts.registry.set(listener);
  return rtc::Init_Successd;
}

int MediaServiceImpl::Initialize(rtc::Settings* settings, rtc::MediaServiceListener* listener) {
  noteCall(kName, "Initialize", settings, listener);
  core_.parts.start(settings);
  core_.parts.registry.set(listener);
  return rtc::Init_Successd;
}

int MediaServiceImpl::JoinGroup(const char* group, rtc::Settings* settings) {
  return noteCall(kName, "JoinGroup", group, settings), core_.parts.session.joinGroup(group);
}
void MediaServiceImpl::LeaveGroup() { noteCall(kName, "LeaveGroup"), core_.parts.session.leaveGroup(); }

void MediaServiceImpl::Terminate() {
  noteCall(kName, "Terminate");
  auto& parts = core_.parts;
  parts.session.leaveNow();
  // OnTerminate is the last thing the service face hears.
  parts.scheduler.runAndWait(
      [&] { parts.registry.invoke<rtc::MediaServiceListener>([](auto* l) { l->OnTerminate(); }); });
  parts.stop();
}

int MediaServiceImpl::LastError() { return noteCall(kName, "LastError"), core_.parts.session.lastError(); }
void MediaServiceImpl::SetNetworkType(rtc::NetworkType type) {
  noteCall(kName, "SetNetworkType", type), core_.parts.media.with([&](auto& m) { m.networkType = type; });
}
void MediaServiceImpl::UpdateSetting(std::map<std::string, std::string> settings) {
  noteCall(kName, "UpdateSetting", settings);
  core_.parts.media.with([&](auto& m) {
    for (auto& [key, value] : settings) m.serviceSettings[key] = value;
  });
}
void MediaServiceImpl::UpdateRtmpUrl(const std::string& url) {
  noteCall(kName, "UpdateRtmpUrl", url), core_.parts.media.with([&](auto& m) { m.rtmpUrl = url; });
}
bool MediaServiceImpl::IsEchoStarted() { return noteCall(kName, "IsEchoStarted"), core_.parts.session.echoRunning(); }
void MediaServiceImpl::StartEchoTest(rtc::EchoCheckType type) {
  noteCall(kName, "StartEchoTest", type), core_.parts.session.startEcho(type);
}
void MediaServiceImpl::StopEchoTest(rtc::EchoCheckType type) {
  noteCall(kName, "StopEchoTest", type), core_.parts.session.stopEcho(type);
}

}  // namespace orva::loopback
