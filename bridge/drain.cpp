#include "drain.h"

#include <cstdio>
#include <cstring>

#include "payloads.h"
#include "wrapper_state.h"

namespace orva::bridge {
namespace {

constexpr const char* kFrameEvent = "OnVideoFrame";
constexpr const char* kTextureFrameEvent = "OnVideoFrameTexture";

v8::Local<v8::String> nameOf(WrapperState& state, const char* name) {
  v8::Isolate* isolate = state.isolate;
  auto found = state.names.find(name);
  if (found != state.names.end()) return found->second.Get(isolate);
  v8::Local<v8::String> text = v8::String::NewFromUtf8(isolate, name, v8::NewStringType::kInternalized).ToLocalChecked();
  state.names[name].Reset(isolate, text);
  return text;
}

v8::Local<v8::Value> text(v8::Isolate* isolate, const std::string& value) {
  if (value.empty()) return v8::String::Empty(isolate);
  return v8::String::NewFromUtf8(isolate, value.data(), v8::NewStringType::kNormal, static_cast<int>(value.size()))
      .ToLocalChecked();
}

// An exception of the handler stops neither the drain nor the process; it is
// written to standard error so that the script's author sees it.
void reportHandlerException(v8::Isolate* isolate, v8::Local<v8::Context> context, const v8::TryCatch& caught) {
  v8::Local<v8::Value> detail;
  if (!caught.StackTrace(context).ToLocal(&detail) || !detail->IsString()) detail = caught.Exception();
  v8::String::Utf8Value message(isolate, detail);
  std::fprintf(stderr, "orvaEngine: the event handler threw: %s\n", *message != nullptr ? *message : "(unprintable)");
}

// Calls the script handler as handler(name, int1, int2, int3, str1, str2, payload).
void callHandler(WrapperState& state, v8::Local<v8::Context> context, const char* name, const PendingEvent& event,
                 v8::Local<v8::Object> payload) {
  v8::Isolate* isolate = state.isolate;
  v8::Local<v8::Value> handler = state.callback.Get(isolate);
  if (!handler->IsFunction()) return;
  v8::Local<v8::Value> arguments[] = {
      nameOf(state, name),
      v8::Integer::New(isolate, event.int1),
      v8::Integer::New(isolate, event.int2),
      v8::Integer::New(isolate, event.int3),
      text(isolate, event.str1),
      text(isolate, event.str2),
      payload,
  };
  v8::TryCatch caught(isolate);
  // The handler's result is of no interest; an exception is reported below.
  v8::MaybeLocal<v8::Value> result = handler.As<v8::Function>()->Call(context, v8::Undefined(isolate), 7, arguments);
  (void)result;
  if (caught.HasCaught() && caught.CanContinue()) reportHandlerException(isolate, context, caught);
}

// A frame: its metadata and the registration, read under the frame lock,
// which stays held while the handler runs so that the buffer holds still.
void deliverFrame(WrapperState& state, v8::Local<v8::Context> context, const PendingEvent& event) {
  state.frames.lock();
  v8::Local<v8::Object> payload = framePayload(context, event, state.frames);
  callHandler(state, context, event.frameHandle != 0 ? kTextureFrameEvent : kFrameEvent, event, payload);
  state.frames.unlock();
}

}  // namespace

void drain(uv_async_t* handle) {
  auto* state = static_cast<WrapperState*>(handle->data);
  if (state == nullptr || state->isolate == nullptr || state->queue.empty()) return;
  v8::Isolate* isolate = state->isolate;
  v8::HandleScope scope(isolate);
  v8::Local<v8::Context> context = state->context.Get(isolate);
  v8::Context::Scope contextScope(context);
  // Runs the microtasks and ticks that the handlers queue, once they are done.
  node::CallbackScope callbackScope(isolate, v8::Object::New(isolate), node::async_context{0, 0});

  PendingEvent event;
  while (state->isolate != nullptr && state->queue.pop(event)) {
    v8::HandleScope eventScope(isolate);
    uint64_t nowMs = uv_hrtime() / 1000000;
    if (std::strcmp(event.name, kFrameEvent) == 0) {
      state->lastFrameDeliveryMs = nowMs;
      deliverFrame(*state, context, event);
      // A frame ends this turn so that the loop's other work keeps its pace;
      // what is left waits for the next turn, which is asked for here.
      if (state->isolate != nullptr && !state->queue.empty()) uv_async_send(handle);
      return;
    }
    v8::Local<v8::Object> payload = v8::Object::New(isolate);
    if (event.payload) fillPayload(context, event.name, *event.payload, payload);
    callHandler(*state, context, event.name, event, payload);
  }
}

}  // namespace orva::bridge
