#include "script_calls.h"

#include <node_buffer.h>

#include <cstdint>
#include <string>

#include "orva/engine.h"
#include "sdk/win/v8_compat.h"
#include "wrapper_state.h"

namespace orva::bridge {
namespace {

// What script asked to register, read in full before any of it is used.
struct Registration {
  v8::Local<v8::Value> buffer;
  /// Truncated toward zero, NaN as 0, saturated at the ends of the range.
  int64_t id = 0;
  std::string userId;
  int32_t width = 0;
  int32_t height = 0;
};

// Reads the options. The getters, proxies and conversions that script put
// there may throw: false then, with the exception left for script.
bool readRegistration(v8::Local<v8::Context> context, v8::Local<v8::Object> options, Registration& out) {
  v8::Isolate* isolate = binding::isolateOf(context);
  auto get = [&](v8::Local<v8::String> key, v8::Local<v8::Value>& value) {
    return options->Get(context, key).ToLocal(&value);
  };
  const v8::Local<v8::String> userIdKey = v8::String::NewFromUtf8Literal(isolate, "userId");
  v8::Local<v8::Value> value;
  v8::Local<v8::String> userId;
  int32_t ignored = 0;
  bool read =
      get(v8::String::NewFromUtf8Literal(isolate, "buffer"), out.buffer) &&
      get(v8::String::NewFromUtf8Literal(isolate, "id"), value) && value->IntegerValue(context).To(&out.id) &&
      get(userIdKey, value) && value->ToString(context).ToLocal(&userId) &&
      // "userId" is read a second time as a number; its value is not used.
      get(userIdKey, value) && value->Int32Value(context).To(&ignored) &&
      get(v8::String::NewFromUtf8Literal(isolate, "width"), value) && value->Int32Value(context).To(&out.width) &&
      get(v8::String::NewFromUtf8Literal(isolate, "height"), value) && value->Int32Value(context).To(&out.height);
  if (!read) return false;
  // Every frame hands the userId back to script: one that V8 could not make
  // into a string again is refused now rather than lose every frame later.
  if (binding::utf8Length(isolate, userId) > static_cast<size_t>(v8::String::kMaxLength)) {
    isolate->ThrowException(v8::Exception::RangeError(
        v8::String::NewFromUtf8Literal(isolate, "setVideoFrameRenderBuffer: the userId is too long")));
    return false;
  }
  v8::String::Utf8Value userIdText(isolate, userId);
  out.userId.assign(*userIdText, static_cast<size_t>(userIdText.length()));
  return true;
}

// Whether script can make this memory smaller than it is now: the engine
// would then write past its end. Such a buffer is treated as no buffer.
bool shrinkable(const std::shared_ptr<v8::BackingStore>& store) {
  return binding::resizableByScript(store) && !store->IsShared();
}

// Makes `registration` the one frames are copied into, in one step under the
// frame lock: no script runs between reading the buffer's memory and handing
// it to the engine, so a getter cannot move it in between.
void commit(ScriptLink& link, const Registration& registration) {
  FrameSink& frames = link.state.frames;
  frames.lock();
  if (node::Buffer::HasInstance(registration.buffer)) {
    v8::Local<v8::ArrayBuffer> arrayBuffer = registration.buffer.As<v8::ArrayBufferView>()->Buffer();
    std::shared_ptr<v8::BackingStore> store = arrayBuffer->GetBackingStore();
    if (!shrinkable(store)) {
      frames.renderBuffer = reinterpret_cast<uint8_t*>(node::Buffer::Data(registration.buffer));
      frames.renderBufferSize = node::Buffer::Length(registration.buffer);
      // The engine writes into this memory from its own threads: it stays
      // alive as long as it is registered, whatever script does with it.
      link.bufferStore = std::move(store);
      link.registeredBuffer.Reset(link.isolate, arrayBuffer);
    }
  }
  frames.renderId = registration.id;
  frames.renderUserId = registration.userId;
  frames.renderWidth = registration.width;
  frames.renderHeight = registration.height;
  frames.unlock();
}

}  // namespace

void bindScriptHandler(WrapperState* state, v8::Isolate* isolate, v8::Local<v8::Value> handler) {
  // After the environment's 'exit' no handler can run any more: nothing to bind.
  ScriptLink* link = state != nullptr ? liveLink(*state, isolate) : nullptr;
  if (link != nullptr) bindHandler(*link, handler);
}

void registerRenderBuffer(WrapperState* state, v8::Isolate* isolate, v8::Local<v8::Value> options) {
  if (state == nullptr) return;
  ScriptLink* link = liveLink(*state, isolate);
  if (!options->IsObject() || link == nullptr) {
    FrameSink& frames = state->frames;
    frames.lock();
    if (link != nullptr) {
      forgetRegisteredBuffer(*link);
    } else {
      frames.clearRegistration();
    }
    frames.unlock();
    sdk_log_info("setVideoFrameRenderBuffer:videoBufferObj invalid");
    return;
  }
  Registration registration;
  if (!readRegistration(isolate->GetCurrentContext(), options.As<v8::Object>(), registration)) return;
  // A getter may have ended the environment for the bridge, by running its
  // 'exit' event.
  if (link->ended) return;
  forgetDetachedBuffer(*link);
  commit(*link, registration);
  const FrameSink& frames = state->frames;
  sdk_log_info("setVideoFrameRenderBuffer:width:%d, height:%d, size:%d", frames.renderWidth, frames.renderHeight,
               static_cast<int32_t>(static_cast<uint32_t>(frames.renderBufferSize)));
}

}  // namespace orva::bridge
