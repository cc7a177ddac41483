#include "script_link.h"

#include "drain.h"
#include "sdk/win/v8_compat.h"
#include "wrapper_state.h"

namespace orva::bridge {
namespace {

void wake(void* context) { uv_async_send(&static_cast<ScriptLink*>(context)->wake); }

ScriptLink* fromData(void* data) { return static_cast<ScriptLink*>(data); }

// The link is freed once the handle is closed and the environment's teardown
// has let go of it, whichever comes last; then the teardown may go on.
void finishTeardown(ScriptLink* link) {
  void (*done)(void*) = link->teardownDone;
  void* doneArgument = link->teardownDoneArgument;
  delete link;
  if (done != nullptr) done(doneArgument);
}

// Releases what the link holds of its environment and closes its handle.
// Runs on the environment's script thread while its isolate is alive.
void endLink(ScriptLink& link) {
  if (link.ended) return;
  link.ended = true;
  WrapperState& state = link.state;
  // From here on no engine thread wakes this handle; events wait in the
  // queue for whichever environment binds a handler next.
  state.queue.detach();
  state.frames.lock();
  forgetRegisteredBuffer(link);
  state.frames.unlock();
  for (auto& name : link.names) name.Reset();
  for (auto& key : link.frameKeys) key.Reset();
  link.callback.Reset();
  link.probe.Reset();
  link.process.Reset();
  link.context.Reset();
  uv_close(reinterpret_cast<uv_handle_t*>(&link.wake), [](uv_handle_t* handle) {
    ScriptLink* closing = fromData(handle->data);
    closing->closed = true;
    if (closing->tornDown) finishTeardown(closing);
  });
}

// The 'exit' event: script can no longer be called back, and V8 still runs,
// which is not so for every clean-up after it.
void onProcessExit(const v8::FunctionCallbackInfo<v8::Value>& info) {
  endLink(*fromData(info.Data().As<v8::External>()->Value()));
}

// The environment goes away: Node.js waits for `done` before it closes the loop.
void onEnvironmentGone(void* argument, void (*done)(void*), void* doneArgument) {
  ScriptLink* link = fromData(argument);
  endLink(*link);
  // The next environment that loads the module starts with a link of its own.
  if (link->state.link == link) link->state.link = nullptr;
  link->tornDown = true;
  link->teardownDone = done;
  link->teardownDoneArgument = doneArgument;
  if (link->closed) finishTeardown(link);
}

// Asks for the 'exit' event. Script may have replaced `process` or its `on`:
// the teardown hook ends the link all the same, so a failure here is dropped.
void listenForExit(ScriptLink& link, v8::Local<v8::Context> context, v8::Local<v8::Object> process) {
  v8::Isolate* isolate = binding::isolateOf(context);
  v8::TryCatch ignored(isolate);
  v8::Local<v8::Value> on;
  v8::Local<v8::Function> listener;
  if (!process->Get(context, v8::String::NewFromUtf8Literal(isolate, "on")).ToLocal(&on) || !on->IsFunction() ||
      !v8::Function::New(context, onProcessExit, v8::External::New(isolate, &link)).ToLocal(&listener)) {
    return;
  }
  v8::Local<v8::Value> arguments[] = {v8::String::NewFromUtf8Literal(isolate, "exit"), listener};
  v8::MaybeLocal<v8::Value> result = on.As<v8::Function>()->Call(context, process, 2, arguments);
  (void)result;
}

// The environment's `process`, read once; an exception of a getter that
// script put there is dropped.
v8::MaybeLocal<v8::Object> processObject(v8::Local<v8::Context> context) {
  v8::Isolate* isolate = binding::isolateOf(context);
  v8::TryCatch ignored(isolate);
  v8::Local<v8::Value> process;
  if (!context->Global()->Get(context, v8::String::NewFromUtf8Literal(isolate, "process")).ToLocal(&process) ||
      !process->IsObject()) {
    return {};
  }
  return process.As<v8::Object>();
}

ScriptLink* makeLink(WrapperState& state, v8::Isolate* isolate) {
  v8::HandleScope scope(isolate);
  v8::Local<v8::Context> context = isolate->GetCurrentContext();
  auto* link = new ScriptLink(state);
  link->isolate = isolate;
  link->context.Reset(isolate, context);
  v8::Local<v8::Function> probe;
  if (v8::Function::New(context, [](const v8::FunctionCallbackInfo<v8::Value>&) {}).ToLocal(&probe)) {
    link->probe.Reset(isolate, probe);
  }
  link->wake.data = link;
  uv_async_init(node::GetCurrentEventLoop(isolate), &link->wake, drain);
  if (!state.keepAlive) uv_unref(reinterpret_cast<uv_handle_t*>(&link->wake));
  link->cleanupHook = node::AddEnvironmentCleanupHook(isolate, onEnvironmentGone, link);
  // Known before any script runs: a getter or an `on` of script's that
  // calls back into the bridge finds this link rather than making another.
  state.link = link;
  v8::Local<v8::Object> process;
  if (processObject(context).ToLocal(&process)) {
    link->process.Reset(isolate, process);
    listenForExit(*link, context, process);
  }
  return link;
}

}  // namespace

ScriptLink* liveLink(WrapperState& state, v8::Isolate* isolate) {
  ScriptLink* link = state.link;
  // Another isolate's link is gone by the time this one may load the module:
  // its teardown clears it before the module lets another thread in.
  if (link == nullptr || link->isolate != isolate) link = makeLink(state, isolate);
  return link->ended ? nullptr : link;
}

void bindHandler(ScriptLink& link, v8::Local<v8::Value> handler) {
  link.callback.Reset(link.isolate, handler);
  link.callbackGeneration += 1;
  // Events raised before the registration are delivered now.
  link.state.queue.attach(wake, &link);
}

bool scriptCanRun(ScriptLink& link) {
  v8::Isolate* isolate = link.isolate;
  if (isolate->IsExecutionTerminating() || link.probe.IsEmpty()) return false;
  v8::HandleScope scope(isolate);
  v8::Local<v8::Context> context = link.context.Get(isolate);
  // While its environment stops or tears down, Node.js spins the loop with
  // script disallowed; a call through it then returns nothing, and throws
  // nothing, instead of running.
  return !node::MakeCallback(isolate, context->Global(), link.probe.Get(isolate), 0, nullptr, node::async_context{0, 0})
              .IsEmpty();
}

void forgetRegisteredBuffer(ScriptLink& link) {
  link.state.frames.clearRegistration();
  link.registeredBuffer.Reset();
  link.bufferStore.reset();
}

void forgetDetachedBuffer(ScriptLink& link) {
  if (link.registeredBuffer.IsEmpty()) return;
  v8::HandleScope scope(link.isolate);
  if (!binding::wasDetached(link.registeredBuffer.Get(link.isolate))) return;
  FrameSink& frames = link.state.frames;
  frames.lock();
  forgetRegisteredBuffer(link);
  frames.unlock();
}

}  // namespace orva::bridge
