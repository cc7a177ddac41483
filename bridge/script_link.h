// One environment's end of the bridge.
//
// What script of one Node.js environment (the main thread, a worker, an
// Electron renderer) hands the bridge belongs to that environment: its
// context and handler, the async handle that wakes its event loop, the buffer
// it registered for frames, the strings made in its isolate. A link holds
// them. It is made the first time script of the environment reaches the
// bridge and ended when the environment ends: at its 'exit' event, while V8
// still runs, or at its teardown, whichever comes first. An ended link is
// never bound again: its handle is initialised once and closed once, and the
// link is freed when both the close callback and the teardown have run.
#pragma once

#include <node.h>
#include <uv.h>
#include <v8.h>

#include <array>
#include <cstdint>
#include <memory>

#include "events_autogen.h"

namespace orva::bridge {

struct WrapperState;

struct ScriptLink {
  explicit ScriptLink(WrapperState& owner) : state(owner) {}
  ScriptLink(const ScriptLink&) = delete;
  ScriptLink& operator=(const ScriptLink&) = delete;

  WrapperState& state;

  // Everything below: the link's own script thread only.

  v8::Isolate* isolate = nullptr;
  v8::Global<v8::Context> context;
  /// The environment's `process` object, to hand handler errors to its
  /// 'uncaughtException' listeners; empty when script had none.
  v8::Global<v8::Object> process;
  v8::Global<v8::Value> callback;
  /// A native function that does nothing, called through Node.js to learn
  /// whether the environment still lets script run.
  v8::Global<v8::Function> probe;
  /// Counts registrations, so that a running drain sees a replaced handler.
  uint32_t callbackGeneration = 1;
  /// Whether the environment has ended for the bridge; nothing is bound,
  /// registered or delivered through the link any more.
  bool ended = false;

  /// The registered buffer's ArrayBuffer, to notice that script detached it,
  /// and its memory, kept alive while the engine may write into it.
  v8::Global<v8::ArrayBuffer> registeredBuffer;
  std::shared_ptr<v8::BackingStore> bufferStore;

  /// Event names as script strings, by EventId, each made when first used.
  std::array<v8::Global<v8::String>, kEventCount> names;
  /// The keys of a frame's payload, made once.
  std::array<v8::Global<v8::String>, kVideoFramePayloadKeys.size()> frameKeys;

  /// Wakes the drain; initialised when the link is made, its data field
  /// pointing back here. Engine threads send on it only through the queue,
  /// which stops them before the handle is closed.
  uv_async_t wake{};

  // Teardown: the handle's close and the environment's clean-up hook may
  // finish in either order; the link goes away after both.
  node::AsyncCleanupHookHandle cleanupHook;
  bool closed = false;
  bool tornDown = false;
  void (*teardownDone)(void*) = nullptr;
  void* teardownDoneArgument = nullptr;
};

/// Script thread: the link of `isolate`'s environment, made on first use;
/// null once that environment has ended for the bridge. Making a link needs
/// a current context.
ScriptLink* liveLink(WrapperState& state, v8::Isolate* isolate);

/// Script thread: makes `handler` the function that the link's events are
/// delivered to, and starts the deliveries.
void bindHandler(ScriptLink& link, v8::Local<v8::Value> handler);

/// Script thread: whether the link's environment still runs script; not so
/// once it is being stopped or torn down. Needs the link's context entered.
bool scriptCanRun(ScriptLink& link);

/// Script thread: forgets the link's registered buffer (the frame lock held).
void forgetRegisteredBuffer(ScriptLink& link);

/// Script thread: forgets the registered buffer if script has detached it
/// since, so that the engine writes no more into memory that script gave away.
void forgetDetachedBuffer(ScriptLink& link);

}  // namespace orva::bridge
