#include "services.h"

namespace orva::loopback {

namespace {
constexpr const char* kName = "LocalMediaTranscoder";
}

int TranscoderImpl::Initialize(rtc::Settings* settings, rtc::ILocalMediaTranscoderCallback* callback) {
  noteCall(kName, "Initialize", settings, callback);
  parts_.start(settings);
  parts_.registry.set(callback);
  return rtc::Init_Successd;
}

void TranscoderImpl::startTranscoding(const rtc::LocalMediaTranscodingParams& params) {
  noteCall(kName, "startTranscoding", params), parts_.transcoder.start(params);
}
void TranscoderImpl::updateTranscodingParams(const rtc::LocalMediaTranscodingParams& params) {
  noteCall(kName, "updateTranscodingParams", params), parts_.transcoder.update(params);
}
void TranscoderImpl::stopTranscoding() { noteCall(kName, "stopTranscoding"), parts_.transcoder.stop(); }
void TranscoderImpl::addImageSource(const std::string& imagePath, int zOrder) {
  noteCall(kName, "addImageSource", imagePath, zOrder), parts_.transcoder.addImage(imagePath, zOrder);
}
void TranscoderImpl::removeImageSource(const std::string& imagePath) {
  noteCall(kName, "removeImageSource", imagePath), parts_.transcoder.removeImage(imagePath);
}
void TranscoderImpl::setMixedVideoRenderView(void* window) {
  noteCall(kName, "setMixedVideoRenderView", window), parts_.media.with([&](auto& m) { m.mixedView = window; });
}
void TranscoderImpl::setRenderFPS(int fps) {
  noteCall(kName, "setRenderFPS", fps), parts_.media.with([&](auto& m) { m.renderFps = fps; });
}
// The loopback has no hardware encoder.
bool TranscoderImpl::isSupportHevcEncode() { return noteCall(kName, "isSupportHevcEncode"), false; }
void TranscoderImpl::startRemoteTranscoding(const rtc::LocalMediaTranscodingParams& params) {
  noteCall(kName, "startRemoteTranscoding", params), parts_.media.with([](auto& m) { m.remoteTranscoding = true; });
}
void TranscoderImpl::updateRemoteTranscodingParams(const rtc::LocalMediaTranscodingParams& params) {
  noteCall(kName, "updateRemoteTranscodingParams", params);
}
void TranscoderImpl::stopRemoteTranscoding() {
  noteCall(kName, "stopRemoteTranscoding"), parts_.media.with([](auto& m) { m.remoteTranscoding = false; });
}
void TranscoderImpl::setRemoteVideoRenderView(void* window) {
  noteCall(kName, "setRemoteVideoRenderView", window), parts_.media.with([&](auto& m) { m.remoteView = window; });
}

}  // namespace orva::loopback
