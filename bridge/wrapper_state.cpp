#include "wrapper_state.h"

#include "drain.h"
#include "orva/engine.h"

namespace orva::bridge {
namespace {

void logToEngine(const char* message) { sdk_log_info("%s", message); }

void wake(void* context) { uv_async_send(&static_cast<WrapperState*>(context)->asyncHandle); }

struct Closing {
  void (*done)(void*);
  void* doneArgument;
};

// The script side goes away while engine threads may still raise events:
// from here on they are dropped, everything that belongs to the isolate is
// released, and the handle is closed; `done` runs once it is.
void releaseScript(WrapperState& state, void (*done)(void*), void* doneArgument) {
  state.queue.close();
  state.frames.lock();
  state.frames.renderBuffer = nullptr;
  state.frames.renderBufferSize = 0;
  state.frames.frameValid = 0;
  state.bufferStore.reset();
  state.frames.unlock();
  for (auto& slot : state.names) {
    slot.text.Reset();
    slot.name = nullptr;
  }
  for (auto& key : state.frameKeys) key.Reset();
  state.callback.Reset();
  state.context.Reset();
  state.isolate = nullptr;
  if (!state.asyncInitialized) {
    if (done != nullptr) done(doneArgument);
    return;
  }
  state.asyncInitialized = false;
  state.asyncHandle.data = new Closing{done, doneArgument};
  uv_close(reinterpret_cast<uv_handle_t*>(&state.asyncHandle), [](uv_handle_t* handle) {
    auto* closing = static_cast<Closing*>(handle->data);
    handle->data = nullptr;
    if (closing->done != nullptr) closing->done(closing->doneArgument);
    delete closing;
  });
}

// The process's "exit" event: script can no longer run, but V8 still can be
// used, which is not so once Node.js starts tearing the environment down.
void onProcessExit(const v8::FunctionCallbackInfo<v8::Value>& info) {
  releaseScript(*static_cast<WrapperState*>(info.Data().As<v8::External>()->Value()), nullptr, nullptr);
}

// The environment goes away: Node.js waits for `done` before it closes the loop.
void onEnvironmentGone(void* argument, void (*done)(void*), void* doneArgument) {
  releaseScript(*static_cast<WrapperState*>(argument), done, doneArgument);
}

void listenForExit(WrapperState& state, v8::Local<v8::Context> context) {
  v8::Isolate* isolate = context->GetIsolate();
  v8::Local<v8::Value> process;
  v8::Local<v8::Value> on;
  if (!context->Global()->Get(context, v8::String::NewFromUtf8Literal(isolate, "process")).ToLocal(&process) ||
      !process->IsObject() ||
      !process.As<v8::Object>()->Get(context, v8::String::NewFromUtf8Literal(isolate, "on")).ToLocal(&on) ||
      !on->IsFunction()) {
    return;
  }
  v8::Local<v8::Function> listener;
  if (!v8::Function::New(context, onProcessExit, v8::External::New(isolate, &state)).ToLocal(&listener)) return;
  v8::Local<v8::Value> arguments[] = {v8::String::NewFromUtf8Literal(isolate, "exit"), listener};
  v8::MaybeLocal<v8::Value> result = on.As<v8::Function>()->Call(context, process, 2, arguments);
  (void)result;
}

}  // namespace

WrapperState::WrapperState() : frames(logToEngine) {}

WrapperState::~WrapperState() {
  // Reached at process exit, possibly after V8 and the environment are gone
  // (process.exit() skips the environment's clean-up): nothing that belongs
  // to them may be released now, so the hook and the buffer's memory are left.
  (void)cleanupHook.release();
  if (bufferStore) {
    // Moved into storage that is never destroyed: only one state lives until exit.
    alignas(std::shared_ptr<v8::BackingStore>) static unsigned char kept[sizeof(std::shared_ptr<v8::BackingStore>)];
    new (kept) std::shared_ptr<v8::BackingStore>(std::move(bufferStore));
  }
}

void bindScript(WrapperState& state, v8::Isolate* isolate, v8::Local<v8::Value> handler) {
  state.isolate = isolate;
  state.context.Reset(isolate, isolate->GetCurrentContext());
  state.callback.Reset(isolate, handler);
  state.callbackGeneration += 1;
  if (state.asyncInitialized) return;
  state.asyncHandle.data = &state;
  uv_async_init(node::GetCurrentEventLoop(isolate), &state.asyncHandle, drain);
  state.asyncInitialized = true;
  if (!state.keepAlive) uv_unref(reinterpret_cast<uv_handle_t*>(&state.asyncHandle));
  (void)state.cleanupHook.release();
  state.cleanupHook = node::AddEnvironmentCleanupHook(isolate, onEnvironmentGone, &state);
  listenForExit(state, isolate->GetCurrentContext());
  state.queue.reopen();
  // Events raised before the registration are delivered now.
  state.queue.attach(wake, &state);
}

void keepEventLoopAlive(WrapperState& state, bool alive) {
  state.keepAlive = alive;
  if (!state.asyncInitialized) return;
  auto* handle = reinterpret_cast<uv_handle_t*>(&state.asyncHandle);
  if (alive) {
    uv_ref(handle);
  } else {
    uv_unref(handle);
  }
}

}  // namespace orva::bridge
