#include "script_calls.h"

#include <node_buffer.h>

#include <cstdint>

#include "facade/orva_engine_wrapper.h"
#include "sdk/win/convert.h"
#include "wrapper_state.h"

namespace orva::bridge {
namespace {

// The latest handler, kept alive for the life of the module whatever
// becomes of the wrapper's own reference. Script thread only.
v8::Persistent<v8::Value> gHandlerSlot;

WrapperState* processState() {
  auto* wrapper = Orva::Rtc::OrvaEngineWrapper::createOrvaEngine();
  return wrapper->eventHandler()->state.get();
}

v8::Local<v8::String> key(v8::Isolate* isolate, const char* name) {
  return v8::String::NewFromUtf8(isolate, name, v8::NewStringType::kInternalized).ToLocalChecked();
}

// Reads the registration from `options` into `frames` (whose lock is held).
// Answers false when reading threw; the exception stays with script.
bool readRegistration(v8::Local<v8::Context> context, v8::Local<v8::Object> options, WrapperState& state) {
  v8::Isolate* isolate = context->GetIsolate();
  FrameSink& frames = state.frames;
  v8::Local<v8::Value> buffer;
  if (!options->Get(context, key(isolate, "buffer")).ToLocal(&buffer)) return false;
  if (node::Buffer::HasInstance(buffer)) {
    frames.renderBuffer = reinterpret_cast<uint8_t*>(node::Buffer::Data(buffer));
    frames.renderBufferSize = node::Buffer::Length(buffer);
    // The engine writes into this memory from its own threads: it stays
    // alive as long as it is registered, whatever script does with it.
    state.bufferStore = buffer.As<v8::ArrayBufferView>()->Buffer()->GetBackingStore();
  }
  v8::Local<v8::Value> value;
  double id = 0;
  if (!options->Get(context, key(isolate, "id")).ToLocal(&value) || !value->NumberValue(context).To(&id)) return false;
  frames.renderId = orva::binding::integerValue(id);
  v8::Local<v8::String> userId;
  if (!options->Get(context, key(isolate, "userId")).ToLocal(&value) || !value->ToString(context).ToLocal(&userId)) {
    return false;
  }
  v8::String::Utf8Value userIdText(isolate, userId);
  frames.renderUserId.assign(*userIdText, static_cast<size_t>(userIdText.length()));
  // "userId" is read a second time as a number; the height below replaces it.
  int32_t number = 0;
  if (!options->Get(context, key(isolate, "userId")).ToLocal(&value) || !value->Int32Value(context).To(&number)) {
    return false;
  }
  frames.renderHeight = number;
  if (!options->Get(context, key(isolate, "width")).ToLocal(&value) || !value->Int32Value(context).To(&number)) {
    return false;
  }
  frames.renderWidth = number;
  if (!options->Get(context, key(isolate, "height")).ToLocal(&value) || !value->Int32Value(context).To(&number)) {
    return false;
  }
  frames.renderHeight = number;
  return true;
}

}  // namespace

void setCallback(const v8::FunctionCallbackInfo<v8::Value>& info) {
  v8::Isolate* isolate = info.GetIsolate();
  v8::Local<v8::Value> handler = info[0];
  gHandlerSlot.Reset();
  if (info.Length() > 0) gHandlerSlot.Reset(isolate, handler);
  auto* wrapper = Orva::Rtc::OrvaEngineWrapper::createOrvaEngine();
  Orva::Rtc::OrvaEngineEventHandler* events = wrapper->eventHandler();
  events->scriptLink = isolate;
  if (events->state) bindScript(*events->state, isolate, handler);
  wrapper->adoptEngine();
}

void setVideoFrameRenderBuffer(const v8::FunctionCallbackInfo<v8::Value>& info) {
  WrapperState* state = processState();
  if (state == nullptr) return;
  v8::Isolate* isolate = info.GetIsolate();
  v8::Local<v8::Value> options = info[0];
  FrameSink& frames = state->frames;
  frames.lock();
  if (!options->IsObject()) {
    frames.renderBuffer = nullptr;
    frames.renderBufferSize = 0;
    frames.frameValid = 0;
    state->bufferStore.reset();
    frames.unlock();
    sdk_log_info("setVideoFrameRenderBuffer:videoBufferObj invalid");
    return;
  }
  bool complete = readRegistration(isolate->GetCurrentContext(), options.As<v8::Object>(), *state);
  int32_t width = frames.renderWidth;
  int32_t height = frames.renderHeight;
  auto size = static_cast<int32_t>(static_cast<uint32_t>(frames.renderBufferSize));
  frames.unlock();
  if (complete) sdk_log_info("setVideoFrameRenderBuffer:width:%d, height:%d, size:%d", width, height, size);
}

}  // namespace orva::bridge
