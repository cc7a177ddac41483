#include "drain.h"

#include <cstdio>

#include "payloads.h"
#include "wrapper_state.h"

namespace orva::bridge {
namespace {

constexpr const char* kTextureFrameEvent = "OnVideoFrameTexture";

v8::Local<v8::String> nameOf(WrapperState& state, const char* name) {
  v8::Isolate* isolate = state.isolate;
  WrapperState::NameSlot& slot = state.names[(reinterpret_cast<uintptr_t>(name) >> 3) % state.names.size()];
  if (slot.name == name) return slot.text.Get(isolate);
  v8::Local<v8::String> text = v8::String::NewFromUtf8(isolate, name, v8::NewStringType::kInternalized).ToLocalChecked();
  slot.name = name;
  slot.text.Reset(isolate, text);
  return text;
}

v8::Local<v8::Value> text(v8::Isolate* isolate, const std::string& value) {
  if (value.empty()) return v8::String::Empty(isolate);
  return v8::String::NewFromUtf8(isolate, value.data(), v8::NewStringType::kNormal, static_cast<int>(value.size()))
      .ToLocalChecked();
}

// One turn of the drain: the events taken until the queue is empty or a
// frame was delivered.
class Turn {
 public:
  Turn(WrapperState& state, v8::Local<v8::Context> context)
      : state_(state), isolate_(state.isolate), context_(context), caught_(state.isolate) {}

  /// Looks the handler up again if script replaced it; outside any event's
  /// handle scope, so that the handle lasts the turn.
  void refreshHandler() {
    if (generation_ == state_.callbackGeneration) return;
    generation_ = state_.callbackGeneration;
    handler_ = state_.callback.Get(isolate_);
  }

  /// Calls the handler as handler(name, int1, int2, int3, str1, str2, payload).
  void call(const char* name, const PendingEvent& event, v8::Local<v8::Object> payload) {
    if (!handler_->IsFunction()) return;
    v8::Local<v8::Value> arguments[] = {
        nameOf(state_, name),
        v8::Integer::New(isolate_, event.int1),
        v8::Integer::New(isolate_, event.int2),
        v8::Integer::New(isolate_, event.int3),
        text(isolate_, event.str1),
        text(isolate_, event.str2),
        payload,
    };
    // The handler's result is of no interest; an exception is reported.
    v8::MaybeLocal<v8::Value> result =
        handler_.As<v8::Function>()->Call(context_, v8::Undefined(isolate_), 7, arguments);
    (void)result;
    if (caught_.HasCaught()) {
      if (caught_.CanContinue()) reportException();
      caught_.Reset();
    }
  }

  /// A frame: its metadata and the registration, read under the frame lock,
  /// which stays held while the handler runs so that the buffer holds still.
  void deliverFrame(const PendingEvent& event) {
    state_.frames.lock();
    v8::Local<v8::Object> payload = framePayload(context_, event, state_.frames, state_.frameKeys);
    call(event.frameHandle != 0 ? kTextureFrameEvent : kVideoFrameEvent, event, payload);
    state_.frames.unlock();
  }

 private:
  // An exception of the handler stops neither the drain nor the process; it
  // is written to standard error so that the script's author sees it.
  void reportException() {
    v8::Local<v8::Value> detail;
    if (!caught_.StackTrace(context_).ToLocal(&detail) || !detail->IsString()) detail = caught_.Exception();
    v8::String::Utf8Value message(isolate_, detail);
    std::fprintf(stderr, "orvaEngine: the event handler threw: %s\n", *message != nullptr ? *message : "(unprintable)");
  }

  WrapperState& state_;
  v8::Isolate* isolate_;
  v8::Local<v8::Context> context_;
  v8::TryCatch caught_;
  uint32_t generation_ = 0;
  v8::Local<v8::Value> handler_;
};

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

  Turn turn(*state, context);
  PendingEvent event;
  while (state->isolate != nullptr && state->queue.pop(event)) {
    turn.refreshHandler();
    v8::HandleScope eventScope(isolate);
    if (event.name == kVideoFrameEvent) {
      state->lastFrameDeliveryMs = uv_hrtime() / 1000000;
      turn.deliverFrame(event);
      // A frame ends this turn so that the loop's other work keeps its pace;
      // what is left waits for the next turn, which is asked for here.
      if (state->isolate != nullptr && !state->queue.empty()) uv_async_send(handle);
      return;
    }
    v8::Local<v8::Object> payload = v8::Object::New(isolate);
    if (event.payload) fillPayload(context, event.name, *event.payload, payload);
    turn.call(event.name, event, payload);
  }
}

}  // namespace orva::bridge
