// IBeautyEngine and MediaLive: state only; the loopback has no filters and
// pushes nowhere.
#include <utility>

#include "services.h"

namespace orva::loopback {

void BeautyImpl::EnableBeauty(const std::string& cameraId) {
  ORVA_JOURNAL(cameraId);
  parts_.media.with([&](auto& m) { m.beautyCameras.insert(cameraId); });
}
void BeautyImpl::SetBeautyParam(const std::string& key, const std::string& value) {
  ORVA_JOURNAL(key, value);
  parts_.media.with([&](auto& m) { m.beautyParams[key] = value; });
}
void BeautyImpl::DisableBeauty(const std::string& cameraId) {
  ORVA_JOURNAL(cameraId);
  parts_.media.with([&](auto& m) { m.beautyCameras.erase(cameraId); });
}
void BeautyImpl::EnableBeautyParam(const std::string& cameraId, const rtc::BeautyInfo& info) {
  ORVA_JOURNAL(cameraId, info);
  parts_.media.with([&](auto& m) { m.beautyInfo[cameraId] = info; });
}
void BeautyImpl::EnableBeautySkinSeg(const std::string& cameraId, bool enable) {
  ORVA_JOURNAL(cameraId, enable);
  parts_.media.with([&](auto& m) { m.skinSegmentation[cameraId] = enable; });
}
void BeautyImpl::SetBeautyFace2DPath(const std::string& path) {
  ORVA_JOURNAL(path);
  parts_.media.with([&](auto& m) { m.face2DPath = path; });
}

int LiveImpl::Initialize(rtc::Settings* settings) {
  ORVA_JOURNAL(settings);
  parts_.start(settings);
  parts_.media.with([](auto& m) { m.liveInitialised = true; });
  return kOk;
}
void LiveImpl::Terminate() {
  ORVA_JOURNAL();
  parts_.media.with([](auto& m) {
    m.liveInitialised = false;
    m.liveUrl.clear();
  });
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
int LiveImpl::StartLive(const char* url) {
  ORVA_JOURNAL(url);
  return startLive(parts_, url);
}
void LiveImpl::StopLive() {
  ORVA_JOURNAL();
  stopLive(parts_);
}
int LiveImpl::StartRender(void* window) {
  ORVA_JOURNAL(window);
  parts_.media.with([&](auto& m) { m.liveView = window; });
  return kOk;
}
void LiveImpl::StopRender() {
  ORVA_JOURNAL();
  parts_.media.with([](auto& m) { m.liveView = nullptr; });
}

}  // namespace orva::loopback
