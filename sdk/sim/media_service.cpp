#include "core.h"

namespace orva::loopback {

rtc::MediaChannel* MediaServiceImpl::RealtimeChannel() {
  ORVA_JOURNAL();
  return &core_.realtime;
}
rtc::MediaChannel* MediaServiceImpl::LiveChannel() {
  ORVA_JOURNAL();
  return &core_.live;
}
rtc::MediaChannel* MediaServiceImpl::LightLiveChannel() {
  ORVA_JOURNAL();
  return &core_.lightLive;
}
rtc::MediaChannel* MediaServiceImpl::GroupChannel() {
  ORVA_JOURNAL();
  return &core_.group;
}
rtc::MediaChannel* MediaServiceImpl::FusionLiveRtcChannel() {
  ORVA_JOURNAL();
  return &core_.fusion;
}
rtc::MediaDevice* MediaServiceImpl::Device() {
  ORVA_JOURNAL();
  return &core_.device;
}
rtc::AudioService* MediaServiceImpl::Audio() {
  ORVA_JOURNAL();
  return &core_.audio;
}
rtc::MediaLive* MediaServiceImpl::Live() {
  ORVA_JOURNAL();
  return &core_.livePush;
}
rtc::LocalMediaTranscoder* MediaServiceImpl::MediaTranscoder() {
  ORVA_JOURNAL();
  return &core_.transcoder;
}
rtc::IBeautyEngine* MediaServiceImpl::BeautyEngine() {
  ORVA_JOURNAL();
  return &core_.beauty;
}

int MediaServiceImpl::JoinSession(const char* session, rtc::Settings* settings) {
  ORVA_JOURNAL(session, settings);
  return core_.parts.session.join(session, settings);
}
void MediaServiceImpl::LeaveSession() {
  ORVA_JOURNAL();
  core_.parts.session.leave();
}

int MediaServiceImpl::Initialize(rtc::Settings* settings, rtc::MediaServiceListener* listener, void* reserved1,
                                 void* reserved2) {
  ORVA_JOURNAL(settings, listener, reserved1, reserved2);
  core_.parts.start(settings);
  core_.parts.registry.set(listener);
  return rtc::Init_Successd;
}

int MediaServiceImpl::Initialize(rtc::Settings* settings, rtc::MediaServiceListener* listener) {
  ORVA_JOURNAL(settings, listener);
  core_.parts.start(settings);
  core_.parts.registry.set(listener);
  return rtc::Init_Successd;
}

int MediaServiceImpl::JoinGroup(const char* group, rtc::Settings* settings) {
  ORVA_JOURNAL(group, settings);
  return core_.parts.session.joinGroup(group);
}
void MediaServiceImpl::LeaveGroup() {
  ORVA_JOURNAL();
  core_.parts.session.leaveGroup();
}

void MediaServiceImpl::Terminate() {
  ORVA_JOURNAL();
  auto& parts = core_.parts;
  parts.session.leaveNow();
  // OnTerminate is the last thing the service face hears.
  parts.scheduler.runAndWait(
      [&] { parts.registry.invoke<rtc::MediaServiceListener>([](auto* l) { l->OnTerminate(); }); });
  parts.stop();
}

int MediaServiceImpl::LastError() {
  ORVA_JOURNAL();
  return core_.parts.session.lastError();
}
void MediaServiceImpl::SetNetworkType(rtc::NetworkType type) {
  ORVA_JOURNAL(type);
  core_.parts.media.with([&](auto& m) { m.networkType = type; });
}
void MediaServiceImpl::UpdateSetting(std::map<std::string, std::string> settings) {
  ORVA_JOURNAL(settings);
  core_.parts.media.with([&](auto& m) {
    for (auto& [key, value] : settings) m.serviceSettings[key] = value;
  });
}
void MediaServiceImpl::UpdateRtmpUrl(const std::string& url) {
  ORVA_JOURNAL(url);
  core_.parts.media.with([&](auto& m) { m.rtmpUrl = url; });
}
bool MediaServiceImpl::IsEchoStarted() {
  ORVA_JOURNAL();
  return core_.parts.session.echoRunning();
}
void MediaServiceImpl::StartEchoTest(rtc::EchoCheckType type) {
  ORVA_JOURNAL(type);
  core_.parts.session.startEcho(type);
}
void MediaServiceImpl::StopEchoTest(rtc::EchoCheckType type) {
  ORVA_JOURNAL(type);
  core_.parts.session.stopEcho(type);
}

}  // namespace orva::loopback
