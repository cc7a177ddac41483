// Threads that raise test events concurrently, for the control seam: each
// of N threads raises OnPlayFilePosChanged(threadIndex, seq, 0) M times on
// the registered audio-service face. They are engine threads like the
// others: stopping the engine stops and joins them.
#pragma once

#include <atomic>
#include <mutex>
#include <thread>
#include <vector>

#include "listener_registry.h"

namespace orva::loopback {

class Raisers {
 public:
  explicit Raisers(ListenerRegistry& registry) : registry_(registry) {}
  Raisers(const Raisers&) = delete;
  Raisers& operator=(const Raisers&) = delete;

  // Starts `threads` more raisers; returns at once. False for counts below 1.
  bool start(int threads, int perThread);
  // Waits for every raiser to finish.
  void join();
  // Asks every raiser to end early, then joins them.
  void stop();

 private:
  ListenerRegistry& registry_;
  std::atomic<bool> stopping_{false};
  std::mutex mutex_;  // guards threads_
  std::vector<std::thread> threads_;
};

}  // namespace orva::loopback
