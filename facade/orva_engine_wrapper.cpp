// The wrapper's life and its operations that do more than forward.
#include "facade/orva_engine_wrapper.h"

#include <cstdlib>
#include <mutex>

#include "bridge/wrapper_state.h"
#include "diagnostics/adapter_lookup.h"
#include "diagnostics/engine_calls.h"
#include "facade/capture_modes.h"

namespace Orva::Rtc {

OrvaEngineWrapper::OrvaEngineWrapper(ProcessWide) : handler_(std::make_unique<OrvaEngineEventHandler>()) {}

OrvaEngineWrapper::OrvaEngineWrapper() : OrvaEngineWrapper(ProcessWide{}) {
  orva::bridge::neverDeliver(*handler_->state);
}

OrvaEngineWrapper::~OrvaEngineWrapper() {
  // The engine may hold the handler; it lets go and finishes any callback
  // into it before the handler goes away.
  if (engine_ != nullptr) engine_->removeEventHandler(handler_.get(), handler_.get());
}

OrvaEngineWrapper* OrvaEngineWrapper::createOrvaEngine() {
  static std::once_flag once;
  static OrvaEngineWrapper* instance = nullptr;
  std::call_once(once, [] {
    instance = new OrvaEngineWrapper(ProcessWide{});
    std::atexit([] { delete instance; });
  });
  return instance;
}

void OrvaEngineWrapper::createOrvaSentry(Settings* settings) {
  if (settings != nullptr) orva::diagnostics::loadSettingsFile(*settings);
  OrvaEngine::createOrvaSentry(settings);
}

void OrvaEngineWrapper::updateOrvaSentry(Settings* settings) { OrvaEngine::updateOrvaSentry(settings); }

void OrvaEngineWrapper::enableOrvaSentry(bool enable) { OrvaEngine::enableOrvaSentry(enable); }

void OrvaEngineWrapper::destroyOrvaSentry(bool flush) { OrvaEngine::destroyOrvaSentry(flush); }

void OrvaEngineWrapper::reportOrvaSentryEvent(SentryReportType type, const std::string& tag,
                                              const std::string& message) {
  OrvaEngine::reportOrvaSentryEvent(type, tag, message);
}

namespace {

ScreenCaptureModeList modeList(const std::vector<int>& modes) {
  ScreenCaptureModeList list;
  for (int mode : modes) list.Add(mode);
  return list;
}

}  // namespace

ScreenCaptureModeList OrvaEngineWrapper::getScreenCaptureModeList() {
  return modeList(orva::facade::screenCaptureModes(orva::platform::osVersion()));
}

ScreenCaptureModeList OrvaEngineWrapper::getWindowCaptureModeList() {
  return modeList(orva::facade::windowCaptureModes(orva::platform::osVersion()));
}

int OrvaEngineWrapper::initialize(Settings* settings, OrvaEngineListener* /*listener*/) {
  engine_ = OrvaEngine::SDK();
  if (engine_ == nullptr) return -1;
  // No environment at all counts as development: the settings file applies.
  std::string environment = settings != nullptr ? settings->get("environment", "") : std::string();
  if (environment.empty() || environment == "dev") {
    devEnvironment_ = true;
    if (settings != nullptr) orva::diagnostics::loadSettingsFile(*settings);
  }
  if (settings != nullptr) orva::diagnostics::prepareEngineLog(*settings, logDir_);
  OrvaEngine::updateOrvaSentry(settings);
  int result = engine_->initialize(settings, handler_.get());
  // An engine that refused to start raises nothing to wait for; one that an
  // earlier call started still runs.
  if (result == 0) orva::bridge::keepEventLoopAlive(*handler_->state, true);
  return result;
}

void OrvaEngineWrapper::destroy() {
  if (engine_ == nullptr) return;
  engine_->destroy();
  orva::bridge::keepEventLoopAlive(*handler_->state, false);
}

int OrvaEngineWrapper::enterRoom(const std::string& roomId, Settings* settings) {
  if (engine_ == nullptr) return -1;
  if (devEnvironment_ && settings != nullptr) orva::diagnostics::loadSettingsFile(*settings);
  return engine_->enterRoom(roomId.c_str(), settings);
}

void OrvaEngineWrapper::exitRoom() {
  forward([](OrvaEngine& engine) {
    engine.unPublishAudio();
    engine.unPublishVideo();
    engine.exitRoom();
  });
}

void OrvaEngineWrapper::muteLocalVideo(bool mute, VideoStreamType streamType) {
  forward([&](OrvaEngine& engine) {
    if (mute) {
      engine.unPublishVideo();
    } else {
      engine.publishVideo(MixerCaptureSource, streamType);
    }
  });
}

void OrvaEngineWrapper::sendSEIMsg(const std::string& message, int count) {
  for (int sent = 0; sent < count && engine_ != nullptr; ++sent) engine_->sendSEIMsg(message.c_str());
}

void OrvaEngineWrapper::startTranscoding(const LocalMediaTranscodingParams& params) {
  forward([&](OrvaEngine& engine) {
    engine.startTranscoding(params);
    // The composed frames come to the handler, which hands them to script.
    engine.SetCameraVideoProcessor(static_cast<VideoFrameProcessor*>(handler_.get()));
  });
}

void OrvaEngineWrapper::startSystemAudioLoopback(const std::string& deviceName) {
  forward([&](OrvaEngine& engine) {
    engine.setSystemAudioLoopbackDevice(deviceName.c_str());
    engine.enableSystemAudioLoopback(deviceName.c_str());
    engine.startSystemAudioLoopback();
  });
}

void OrvaEngineWrapper::stopSystemAudioLoopback() {
  forward([](OrvaEngine& engine) {
    engine.enableSystemAudioLoopback("");
    engine.setSystemAudioLoopbackDevice();
  });
}

bool OrvaEngineWrapper::isSupportShareTexture(const std::string& adapterKey) {
  return orva::diagnostics::isSupportShareTexture(adapterKey);
}

void OrvaEngineWrapper::setJsMixedVideoRenderView(uint32_t window) {
  if (engine_ == nullptr || !orva::platform::isWindow(window)) return;
  // A native window handle is a number to script and a pointer to the engine.
  engine_->setMixedVideoRenderView(
      reinterpret_cast<void*>(static_cast<uintptr_t>(window)));  // NOLINT(performance-no-int-to-ptr)
}

void OrvaEngineWrapper::enableBeauty(const std::string& cameraId) {
  handler_->rearmBeautyReports();
  forward([&](OrvaEngine& engine) { engine.enableBeauty(cameraId.c_str()); });
}

void OrvaEngineWrapper::enableBeautyParameter(const std::string& cameraId, const BeautyInfo& info) {
  handler_->rearmBeautyReports();
  forward([&](OrvaEngine& engine) { engine.enableBeautyParameter(cameraId, info); });
}

}  // namespace Orva::Rtc
