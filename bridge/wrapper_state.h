// The event handler's private block: the queue of events for script, the
// render buffer for frames, and the link to the environment whose script
// receives them.
#pragma once

#include <cstdint>

#include "event_queue.h"
#include "frame_sink.h"
#include "script_link.h"

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

  /// The link of the environment that uses the bridge, or null. Script thread
  /// of that environment; only one environment at a time may use the module,
  /// and a link is let go by its environment's teardown before another one
  /// may load it.
  ScriptLink* link = nullptr;
  /// Whether an initialised engine keeps the event loop alive. Script thread.
  bool keepAlive = false;
  /// When the drain last took a frame, in milliseconds of uv_hrtime. Script thread.
  uint64_t lastFrameDeliveryMs = 0;
};

/// Engine threads: hands `event` to script, or drops it when it can never
/// reach script.
inline void enqueue(WrapperState& state, PendingEvent&& event) { state.queue.push(std::move(event)); }

/// Script thread: whether pending engine work holds the event loop open. An
/// initialised engine does; after `destroy` a script may exit by itself.
void keepEventLoopAlive(WrapperState& state, bool alive);

/// Script thread: events of this state can never reach script (the state of
/// a wrapper that `setCallback` never binds), so none is kept.
void neverDeliver(WrapperState& state);

}  // namespace orva::bridge
