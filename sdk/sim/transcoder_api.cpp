#include "services.h"

namespace orva::loopback {

int TranscoderImpl::Initialize(rtc::Settings* settings, rtc::ILocalMediaTranscoderCallback* callback) {
  ORVA_JOURNAL(settings, callback);
  parts_.start(settings);
  parts_.registry.set(callback);
  return rtc::Init_Successd;
}

void TranscoderImpl::startTranscoding(const rtc::LocalMediaTranscodingParams& params) {
  ORVA_JOURNAL(params);
  parts_.transcoder.start(params);
}
void TranscoderImpl::updateTranscodingParams(const rtc::LocalMediaTranscodingParams& params) {
  ORVA_JOURNAL(params);
  parts_.transcoder.update(params);
}
void TranscoderImpl::stopTranscoding() {
  ORVA_JOURNAL();
  parts_.transcoder.stop();
}
void TranscoderImpl::addImageSource(const std::string& imagePath, int zOrder) {
  ORVA_JOURNAL(imagePath, zOrder);
  parts_.transcoder.addImage(imagePath, zOrder);
}
void TranscoderImpl::removeImageSource(const std::string& imagePath) {
  ORVA_JOURNAL(imagePath);
  parts_.transcoder.removeImage(imagePath);
}
void TranscoderImpl::setMixedVideoRenderView(void* window) {
  ORVA_JOURNAL(window);
  parts_.media.with([&](auto& m) { m.mixedView = window; });
}
void TranscoderImpl::setRenderFPS(int fps) {
  ORVA_JOURNAL(fps);
  parts_.media.with([&](auto& m) { m.renderFps = fps; });
}
// The loopback has no hardware encoder.
bool TranscoderImpl::isSupportHevcEncode() {
  ORVA_JOURNAL();
  return false;
}
void TranscoderImpl::startRemoteTranscoding(const rtc::LocalMediaTranscodingParams& params) {
  ORVA_JOURNAL(params);
  parts_.media.with([](auto& m) { m.remoteTranscoding = true; });
}
void TranscoderImpl::updateRemoteTranscodingParams(const rtc::LocalMediaTranscodingParams& params) {
  ORVA_JOURNAL(params);
}
void TranscoderImpl::stopRemoteTranscoding() {
  ORVA_JOURNAL();
  parts_.media.with([](auto& m) { m.remoteTranscoding = false; });
}
void TranscoderImpl::setRemoteVideoRenderView(void* window) {
  ORVA_JOURNAL(window);
  parts_.media.with([&](auto& m) { m.remoteView = window; });
}

}  // namespace orva::loopback
