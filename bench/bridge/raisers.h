// The engine-thread side of the event benchmarks, shared by every
// implementation so that they all see the same producers: `threads` threads
// each raise `perThread` events, flat out or paced to a total rate, and
// stamp each event's send time (uv_hrtime, nanoseconds) in a table indexed by
// its sequence number just before handing it over.
//
// Sequence numbers interleave the threads (event k of thread t is
// k * threads + t), so that in paced mode they also follow the time order.
#pragma once

#include <sys/prctl.h>
#include <uv.h>

#include <chrono>
#include <cstdint>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace bench {

struct RaisePlan {
  int threads = 1;
  int perThread = 0;
  /// Events per second over all threads; 0 raises flat out.
  double rate = 0;
  /// Send stamps by sequence number, threads * perThread entries; may be null.
  double* stamps = nullptr;
};

// What every implementation carries from producer to handler: the values
// the bridge copies out of an OnPlayFilePosChanged, in the same shape.
struct Payload {
  const char* name;
  int32_t int1;
  int32_t int2;
  int32_t int3;
  std::string str1;
  std::string str2;
};

inline constexpr char kEventName[] = "OnPlayFilePosChanged";

// Event `seq` of producer `thread`, as OnPlayFilePosChanged(thread, seq, 0).
inline Payload positionChanged(int thread, int seq) { return {kEventName, thread, seq, 0, {}, {}}; }

// `dueNs` is on the monotonic clock, as uv_hrtime reads it.
inline void sleepUntil(uint64_t dueNs) {
  std::this_thread::sleep_until(std::chrono::steady_clock::time_point(std::chrono::nanoseconds(dueNs)));
}

// One sample's producer threads. `send(thread, seq)` raises one event.
class Raisers {
 public:
  Raisers() = default;
  Raisers(const Raisers&) = delete;
  Raisers& operator=(const Raisers&) = delete;
  ~Raisers() { join(); }

  template <class Send>
  void start(const RaisePlan& plan, Send send) {
    join();
    // uv_hrtime reads CLOCK_MONOTONIC, the clock that sleepUntil waits on.
    const uint64_t origin = uv_hrtime() + 2000000;  // all threads started by then
    for (int t = 0; t < plan.threads; ++t) {
      threads_.emplace_back([plan, send, t, origin] {
        // The default 50 µs of timer slack would bunch paced events up.
        prctl(PR_SET_TIMERSLACK, 1UL, 0UL, 0UL, 0UL);
        const double period = plan.rate > 0 ? 1e9 / plan.rate : 0;
        for (int k = 0; k < plan.perThread; ++k) {
          const int seq = k * plan.threads + t;
          if (period > 0) sleepUntil(origin + static_cast<uint64_t>(period * seq));
          if (plan.stamps != nullptr) plan.stamps[seq] = static_cast<double>(uv_hrtime());
          send(t, seq);
        }
      });
    }
  }

  void join() {
    for (std::thread& thread : threads_) thread.join();
    threads_.clear();
  }

 private:
  std::vector<std::thread> threads_;
};

}  // namespace bench
