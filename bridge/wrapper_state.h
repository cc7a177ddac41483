// The event handler's private block: the queue of events for script, the
// render buffer for frames, and the script-side link that drains them.
#pragma once

#include <node.h>
#include <uv.h>
#include <v8.h>

#include <array>
#include <cstdint>
#include <memory>

#include "event_queue.h"
#include "frame_sink.h"

namespace orva::bridge {

struct WrapperState {
  WrapperState();
  ~WrapperState();
  WrapperState(const WrapperState&) = delete;
  WrapperState& operator=(const WrapperState&) = delete;

  /// Any thread: events on their way to script.
  EventQueue queue;
  /// Engine threads offer frames; the script thread registers buffers and
  /// reads frames under its lock.
  FrameSink frames;

  // Script thread only. V8 handles are `Persistent` so that nothing touches
  // V8 when the process-wide handler is destroyed at exit; they are reset
  // when the Node.js environment goes away.
  v8::Isolate* isolate = nullptr;
  v8::Persistent<v8::Context> context;
  v8::Persistent<v8::Value> callback;
  /// Counts registrations (never 0), so that a drain sees a replaced handler.
  uint32_t callbackGeneration = 1;
  /// Keeps the registered buffer's memory alive while the engine may write it.
  std::shared_ptr<v8::BackingStore> bufferStore;
  /// Wakes the drain; initialised once, by the first registration.
  uv_async_t asyncHandle{};
  bool asyncInitialized = false;
  /// Whether an initialised engine keeps the event loop alive.
  bool keepAlive = false;
  /// When the drain last took a frame, in milliseconds of uv_hrtime.
  uint64_t lastFrameDeliveryMs = 0;
  /// Event names as script strings, made once per name: slots picked by
  /// the address of the name's literal; a collision just makes it again.
  struct NameSlot {
    const char* name = nullptr;
    v8::Persistent<v8::String> text;
  };
  std::array<NameSlot, 64> names;
  /// The keys of a frame's payload, made once.
  std::array<v8::Persistent<v8::String>, 16> frameKeys;
  node::AsyncCleanupHookHandle cleanupHook;
};

/// Engine threads: hands `event` to script, or drops it once the script side
/// has gone away.
inline void enqueue(WrapperState& state, PendingEvent&& event) { state.queue.push(std::move(event)); }

/// Script thread: binds the state to `isolate`'s current context and
/// `handler`; the first binding also starts the wake-ups.
void bindScript(WrapperState& state, v8::Isolate* isolate, v8::Local<v8::Value> handler);

/// Script thread: whether pending engine work holds the event loop open. An
/// initialised engine does; after `destroy` a script may exit by itself.
void keepEventLoopAlive(WrapperState& state, bool alive);

}  // namespace orva::bridge
