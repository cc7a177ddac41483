// IBeautyEngine and MediaLive: state only; the loopback has no filters and
// pushes nowhere.
#include <utility>

#include "services.h"

namespace orva::loopback {

namespace {
constexpr const char* kBeauty = "IBeautyEngine";
constexpr const char* kLive = "MediaLive";
}  // namespace

void BeautyImpl::EnableBeauty(const std::string& cameraId) {
  noteCall(kBeauty, "EnableBeauty", cameraId), parts_.media.with([&](auto& m) { m.beautyCameras.insert(cameraId); });
}
void BeautyImpl::SetBeautyParam(const std::string& key, const std::string& value) {
  noteCall(kBeauty, "SetBeautyParam", key, value), parts_.media.with([&](auto& m) { m.beautyParams[key] = value; });
}
void BeautyImpl::DisableBeauty(const std::string& cameraId) {
  noteCall(kBeauty, "DisableBeauty", cameraId), parts_.media.with([&](auto& m) { m.beautyCameras.erase(cameraId); });
}
void BeautyImpl::EnableBeautyParam(const std::string& cameraId, const rtc::BeautyInfo& info) {
  noteCall(kBeauty, "EnableBeautyParam", cameraId, info);
  parts_.media.with([&](auto& m) { m.beautyInfo[cameraId] = info; });
}
void BeautyImpl::EnableBeautySkinSeg(const std::string& cameraId, bool enable) {
  noteCall(kBeauty, "EnableBeautySkinSeg", cameraId, enable);
  parts_.media.with([&](auto& m) { m.skinSegmentation[cameraId] = enable; });
}
void BeautyImpl::SetBeautyFace2DPath(const std::string& path) {
  noteCall(kBeauty, "SetBeautyFace2DPath", path), parts_.media.with([&](auto& m) { m.face2DPath = path; });
}

int LiveImpl::Initialize(rtc::Settings* settings) {
  noteCall(kLive, "Initialize", settings);
  parts_.start(settings);
  return parts_.media.with([](auto& m) { return m.liveInitialised = true, kOk; });
}
void LiveImpl::Terminate() {
  noteCall(kLive, "Terminate");
  parts_.media.with([](auto& m) { m.liveInitialised = false, m.liveUrl.clear(); });
}
int startLive(CoreParts& parts_, const char* url) {
  if (url == nullptr || *url == '\0') return kInvalidArgument;
  parts_.media.with([&](auto& m) { m.liveUrl = url; });
  parts_.events.raise<rtc::MediaLiveListener>([](rtc::MediaLiveListener* l) {
    l->OnAudioEvent(rtc::FirstSendVoice);
    l->OnVideoEvent(rtc::FirstSendImage);
  });
  return kOk;
}
void stopLive(CoreParts& parts_) {
  if (parts_.media.with([](auto& m) { return std::exchange(m.liveUrl, std::string()); }).empty()) return;
  parts_.events.raise<rtc::MediaLiveListener>([](rtc::MediaLiveListener* l) {
    l->OnAudioEvent(rtc::StoppedVoice);
    l->OnVideoEvent(rtc::StoppedImage);
  });
}
int LiveImpl::StartLive(const char* url) { return noteCall(kLive, "StartLive", url), startLive(parts_, url); }
void LiveImpl::StopLive() { noteCall(kLive, "StopLive"), stopLive(parts_); }
int LiveImpl::StartRender(void* window) {
  noteCall(kLive, "StartRender", window);
  return parts_.media.with([&](auto& m) { return m.liveView = window, kOk; });
}
void LiveImpl::StopRender() {
  noteCall(kLive, "StopRender"), parts_.media.with([](auto& m) { m.liveView = nullptr; });
}

}  // namespace orva::loopback
