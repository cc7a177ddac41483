#include "facade/script_methods.h"

#include "bridge/script_calls.h"
#include "facade/orva_engine_wrapper.h"

namespace orva::facade {

void setCallback(const v8::FunctionCallbackInfo<v8::Value>& info) {
  auto* wrapper = Orva::Rtc::OrvaEngineWrapper::createOrvaEngine();
  bridge::bindScriptHandler(wrapper->eventHandler()->state.get(), info.GetIsolate(), info[0]);
  wrapper->adoptEngine();
}

void setVideoFrameRenderBuffer(const v8::FunctionCallbackInfo<v8::Value>& info) {
  auto* wrapper = Orva::Rtc::OrvaEngineWrapper::createOrvaEngine();
  bridge::registerRenderBuffer(wrapper->eventHandler()->state.get(), info.GetIsolate(), info[0]);
}

}  // namespace orva::facade
