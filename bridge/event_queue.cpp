#include "event_queue.h"

#include <thread>

namespace orva::bridge {

EventQueue::EventQueue() { uv_mutex_init(&mutex_); }

EventQueue::~EventQueue() { uv_mutex_destroy(&mutex_); }

bool EventQueue::push(PendingEvent&& event) {
  uv_mutex_lock(&mutex_);
  if (closed_) {
    uv_mutex_unlock(&mutex_);
    return false;
  }
  events_.push_back(std::move(event));
  size_.store(events_.size(), std::memory_order_release);
  Wake wake = wake_;
  void* context = context_;
  if (wake != nullptr) waking_.fetch_add(1, std::memory_order_acq_rel);
  uv_mutex_unlock(&mutex_);
  // The wake-up goes out after the unlock, once per event: the consumer never
  // waits for a pushing thread, and pushes are merged into one drain anyway.
  if (wake != nullptr) {
    wake(context);
    waking_.fetch_sub(1, std::memory_order_acq_rel);
  }
  return true;
}

bool EventQueue::pop(PendingEvent& out) {
  uv_mutex_lock(&mutex_);
  if (events_.empty()) {
    uv_mutex_unlock(&mutex_);
    return false;
  }
  out = std::move(events_.front());
  events_.pop_front();
  size_.store(events_.size(), std::memory_order_release);
  uv_mutex_unlock(&mutex_);
  return true;
}

void EventQueue::attach(Wake wake, void* context) {
  uv_mutex_lock(&mutex_);
  wake_ = wake;
  context_ = context;
  bool waiting = !events_.empty() && !closed_;
  uv_mutex_unlock(&mutex_);
  if (waiting && wake != nullptr) wake(context);
}

void EventQueue::close() {
  std::deque<PendingEvent> dropped;
  uv_mutex_lock(&mutex_);
  closed_ = true;
  wake_ = nullptr;
  context_ = nullptr;
  dropped.swap(events_);
  size_.store(0, std::memory_order_release);
  uv_mutex_unlock(&mutex_);
  while (waking_.load(std::memory_order_acquire) != 0) std::this_thread::yield();
}

void EventQueue::reopen() {
  uv_mutex_lock(&mutex_);
  closed_ = false;
  uv_mutex_unlock(&mutex_);
}

}  // namespace orva::bridge
