#include "drain.h"

#include "handler_errors.h"
#include "payloads.h"
#include "wrapper_state.h"

namespace orva::bridge {
namespace {

v8::MaybeLocal<v8::String> nameOf(ScriptLink& link, EventId id) {
  v8::Isolate* isolate = link.isolate;
  v8::Global<v8::String>& made = link.names[static_cast<size_t>(id)];
  if (!made.IsEmpty()) return made.Get(isolate);
  v8::Local<v8::String> text;
  if (!v8::String::NewFromUtf8(isolate, eventInfo(id).name, v8::NewStringType::kInternalized).ToLocal(&text)) return {};
  made.Reset(isolate, text);
  return text;
}

// One turn of the drain: the events taken until the queue is empty, a frame
// was delivered, or the environment stopped running script.
class Turn {
 public:
  Turn(ScriptLink& link, v8::Local<v8::Context> context)
      : link_(link), isolate_(link.isolate), context_(context), caught_(link.isolate) {}

  /// Whether another event may be delivered in this turn.
  bool goesOn() const { return !link_.ended && !stopped_; }

  /// Looks the handler up again if script replaced it; outside any event's
  /// handle scope, so that the handle lasts the turn.
  void refreshHandler() {
    if (generation_ == link_.callbackGeneration) return;
    generation_ = link_.callbackGeneration;
    handler_ = link_.callback.Get(isolate_);
  }

  /// Calls the handler as handler(name, int1, int2, int3, str1, str2, payload).
  void call(const PendingEvent& event, v8::MaybeLocal<v8::Object> payload) {
    if (!settle() || !handler_->IsFunction()) return;
    v8::Local<v8::Value> arguments[7];
    if (!build(event, payload, arguments)) return;
    // The handler's result is of no interest; an exception is reported.
    v8::MaybeLocal<v8::Value> result =
        handler_.As<v8::Function>()->Call(context_, v8::Undefined(isolate_), 7, arguments);
    (void)result;
    if (!caught_.HasCaught()) return;
    if (caught_.CanContinue()) {
      reportHandlerError(context_, link_.process.IsEmpty() ? v8::Local<v8::Object>() : link_.process.Get(isolate_),
                         caught_);
    } else {
      // The environment is being stopped (process.exit() in a worker, a
      // terminated worker): no more script runs in this turn.
      stopped_ = true;
    }
    caught_.Reset();
  }

  /// A frame: its metadata and the registration, read under the frame lock,
  /// which stays held while the handler runs so that the buffer holds still.
  void deliverFrame(const PendingEvent& event) {
    FrameSink& frames = link_.state.frames;
    forgetDetachedBuffer(link_);
    frames.lock();
    v8::MaybeLocal<v8::Object> payload = framePayload(context_, event, frames, link_.frameKeys);
    call(event, payload);
    frames.unlock();
  }

 private:
  // Drops what V8 threw while the event's values were made: it is not the
  // handler's. False when the environment stopped running script.
  bool settle() {
    if (caught_.HasCaught()) {
      if (!caught_.CanContinue()) stopped_ = true;
      caught_.Reset();
    }
    return !stopped_;
  }

  // The seven arguments, or false when one cannot be made (an engine text
  // beyond V8's string length limit, an exhausted heap). No script is on the
  // stack to take an exception, so the event is not delivered.
  bool build(const PendingEvent& event, v8::MaybeLocal<v8::Object> payload, v8::Local<v8::Value> (&arguments)[7]) {
    v8::Local<v8::String> nameText;
    v8::Local<v8::String> str1;
    v8::Local<v8::String> str2;
    v8::Local<v8::Object> made;
    bool complete = nameOf(link_, event.id).ToLocal(&nameText) && scriptText(isolate_, event.str1).ToLocal(&str1) &&
                    scriptText(isolate_, event.str2).ToLocal(&str2) && payload.ToLocal(&made);
    if (!complete) {
      settle();
      return false;
    }
    arguments[0] = nameText;
    arguments[1] = v8::Integer::New(isolate_, event.int1);
    arguments[2] = v8::Integer::New(isolate_, event.int2);
    arguments[3] = v8::Integer::New(isolate_, event.int3);
    arguments[4] = str1;
    arguments[5] = str2;
    arguments[6] = made;
    return true;
  }

  ScriptLink& link_;
  v8::Isolate* isolate_;
  v8::Local<v8::Context> context_;
  v8::TryCatch caught_;
  uint32_t generation_ = 0;
  v8::Local<v8::Value> handler_;
  bool stopped_ = false;
};

}  // namespace

void drain(uv_async_t* handle) {
  auto* link = static_cast<ScriptLink*>(handle->data);
  if (link == nullptr || link->ended) return;
  WrapperState& state = link->state;
  if (state.queue.empty()) return;
  v8::Isolate* isolate = link->isolate;
  v8::HandleScope scope(isolate);
  v8::Local<v8::Context> context = link->context.Get(isolate);
  v8::Context::Scope contextScope(context);
  // Runs the microtasks and ticks that the handlers queue, once they are done.
  node::CallbackScope callbackScope(isolate, v8::Object::New(isolate), node::async_context{0, 0});
  // The events wait for the environment's teardown, which ends the link.
  if (!scriptCanRun(*link)) return;
  // A buffer that script gave away since the last turn is written no more.
  forgetDetachedBuffer(*link);

  Turn turn(*link, context);
  PendingEvent event;
  while (turn.goesOn() && state.queue.pop(event)) {
    turn.refreshHandler();
    v8::HandleScope eventScope(isolate);
    const PayloadKind kind = eventInfo(event.id).payload;
    if (kind == PayloadKind::kVideoFrame) {
      state.lastFrameDeliveryMs = uv_hrtime() / 1000000;
      turn.deliverFrame(event);
      // A frame ends this turn so that the loop's other work keeps its pace;
      // what is left waits for the next turn, which is asked for here.
      if (turn.goesOn() && !state.queue.empty()) uv_async_send(handle);
      return;
    }
    v8::Local<v8::Object> payload = v8::Object::New(isolate);
    bool filled = !event.payload || fillPayload(context, kind, *event.payload, payload);
    turn.call(event, filled ? v8::MaybeLocal<v8::Object>(payload) : v8::MaybeLocal<v8::Object>());
  }
}

}  // namespace orva::bridge
