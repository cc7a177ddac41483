// The engine's video thread: composes a frame of the current layout at the
// layout's rate and hands it to the registered camera frame processor,
// announcing each new size first with OnVideoFormatChanged.
//
// Pacing: frame n is due at start + n/fps. A frame that comes due while the
// thread is more than one period late is skipped (counted), never bunched.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>

#include "compose.h"
#include "listener_registry.h"

namespace orva::loopback {

class VideoPump {
 public:
  explicit VideoPump(ListenerRegistry& registry) : registry_(registry) {}
  VideoPump(const VideoPump&) = delete;
  VideoPump& operator=(const VideoPump&) = delete;

  // Starts the thread with `layout`, or switches a running one to it.
  void show(const Layout& layout);
  // Stops and joins the thread; no frame is delivered after it returns.
  void stop();
  bool running();

  uint64_t framesComposed();
  uint64_t framesSkipped();

 private:
  void run();

  ListenerRegistry& registry_;
  std::mutex mutex_;  // guards every field below
  std::condition_variable wake_;
  Layout layout_;
  bool changed_ = false;
  bool running_ = false;
  std::thread thread_;
  uint64_t composed_ = 0;
  uint64_t skipped_ = 0;
};

}  // namespace orva::loopback
