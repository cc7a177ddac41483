// The queue between the engine's threads and the script thread.
//
// Engine threads push; the script thread pops one event per lock hold and
// is woken through a wake function once one is attached. Events pushed while
// no wake is attached wait in the queue; events pushed after `close` are
// dropped, for a queue whose events can never reach script.
#pragma once

#include <uv.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "pending_event.h"

namespace orva::bridge {

class EventQueue {
 public:
  /// Wakes the consumer; called on the pushing thread after the unlock.
  using Wake = void (*)(void* context);

  EventQueue();
  ~EventQueue();
  EventQueue(const EventQueue&) = delete;
  EventQueue& operator=(const EventQueue&) = delete;

  /// Any thread. Appends `event` and wakes the consumer, if one is attached.
  /// Answers false (and drops the event) once the queue is closed.
  bool push(PendingEvent&& event);

  /// Consumer. Moves the front event into `out`; false when empty.
  bool pop(PendingEvent& out);

  /// Consumer. Whether the queue looks empty, without taking the lock.
  bool empty() const { return size_.load(std::memory_order_acquire) == 0; }

  /// Consumer. Routes wake-ups to `wake(context)` from now on and wakes at
  /// once when events are already waiting.
  void attach(Wake wake, void* context);

  /// Consumer. Stops the wake-ups and returns once no thread is inside a
  /// wake any more, so that the wake target may go away. Events keep
  /// waiting for the next consumer that attaches.
  void detach();

  /// Drops every waiting and later event, and returns once no thread is
  /// inside a wake any more, so that the wake target may go away.
  void close();

 private:
  /// Whether the ring holds no event; called with mutex_ held.
  bool ringEmpty() const { return count_ == 0; }
  /// Doubles the ring, keeping the events in order; called with mutex_ held.
  void grow();
  /// Returns once no pushing thread is inside a wake.
  void waitForWakes() const;

  mutable uv_mutex_t mutex_;
  // Guarded by mutex_: the events in a ring of power-of-two size, oldest at
  // `head_`. A ring rather than a deque: a deque allocates a block every few
  // events and frees it on the other thread.
  std::vector<PendingEvent> ring_;
  size_t head_ = 0;
  size_t count_ = 0;
  uint64_t lastGrowthNs_ = 0;  // uv_hrtime of the last growth
  Wake wake_ = nullptr;
  void* context_ = nullptr;
  bool closed_ = false;
  // Mirrors count_ for `empty`; written under mutex_.
  std::atomic<size_t> size_{0};
  // Pushing threads between their unlock and the end of their wake. On a
  // cache line of its own: only pushing threads write it.
  alignas(64) std::atomic<int> waking_{0};
};

}  // namespace orva::bridge
