#include "event_queue.h"

#include <thread>

namespace orva::bridge {

EventQueue::EventQueue() { uv_mutex_init(&mutex_); }

EventQueue::~EventQueue() { uv_mutex_destroy(&mutex_); }

namespace {

// A burst that grew the ring past this capacity gives it back once the ring
// is empty and has not grown for a while: giving it back at every empty
// moment would make a steady stream grow the ring again and again.
constexpr size_t kKeptCapacity = 4096;
constexpr uint64_t kShrinkAfterNs = 1000000000;
constexpr size_t kFirstCapacity = 64;

}  // namespace

void EventQueue::grow() {
  std::vector<PendingEvent> bigger(ring_.empty() ? kFirstCapacity : ring_.size() * 2);
  for (size_t i = 0; i < count_; ++i) bigger[i] = std::move(ring_[(head_ + i) & (ring_.size() - 1)]);
  ring_.swap(bigger);
  head_ = 0;
  lastGrowthNs_ = uv_hrtime();
}

bool EventQueue::push(PendingEvent&& event) {
  uv_mutex_lock(&mutex_);
  if (closed_) {
    uv_mutex_unlock(&mutex_);
    return false;
  }
  if (count_ == ring_.size()) grow();
  ring_[(head_ + count_) & (ring_.size() - 1)] = std::move(event);
  ++count_;
  size_.store(count_, std::memory_order_release);
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
  std::vector<PendingEvent> released;
  uv_mutex_lock(&mutex_);
  if (ringEmpty()) {
    uv_mutex_unlock(&mutex_);
    return false;
  }
  out = std::move(ring_[head_]);
  head_ = (head_ + 1) & (ring_.size() - 1);
  --count_;
  size_.store(count_, std::memory_order_release);
  if (count_ == 0 && ring_.size() > kKeptCapacity && uv_hrtime() - lastGrowthNs_ > kShrinkAfterNs) {
    released.swap(ring_);
    head_ = 0;
  }
  uv_mutex_unlock(&mutex_);
  return true;
}

void EventQueue::attach(Wake wake, void* context) {
  uv_mutex_lock(&mutex_);
  wake_ = wake;
  context_ = context;
  bool waiting = !ringEmpty() && !closed_;
  uv_mutex_unlock(&mutex_);
  if (waiting && wake != nullptr) wake(context);
}

void EventQueue::detach() {
  uv_mutex_lock(&mutex_);
  wake_ = nullptr;
  context_ = nullptr;
  uv_mutex_unlock(&mutex_);
  waitForWakes();
}

void EventQueue::close() {
  std::vector<PendingEvent> dropped;
  uv_mutex_lock(&mutex_);
  closed_ = true;
  wake_ = nullptr;
  context_ = nullptr;
  dropped.swap(ring_);
  head_ = 0;
  count_ = 0;
  size_.store(0, std::memory_order_release);
  uv_mutex_unlock(&mutex_);
  waitForWakes();
}

void EventQueue::waitForWakes() const {
  while (waking_.load(std::memory_order_acquire) != 0) std::this_thread::yield();
}

}  // namespace orva::bridge
