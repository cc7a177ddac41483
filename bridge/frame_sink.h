// Video frames into the buffer that script registered.
//
// The engine thread offers each frame; the script thread holds the lock for
// the whole call of a frame handler, so the buffer never changes under
// script. An engine thread that finds the lock busy drops its frame rather
// than wait: the engine never waits for script.
#pragma once

#include <uv.h>

#include <atomic>
#include <cstdint>
#include <string>
#include <thread>

namespace orva::bridge {

/// What the sink reads of an engine frame.
struct FrameView {
  const void* data = nullptr;
  int32_t size = 0;
  int32_t width = 0;
  int32_t height = 0;
  uint64_t textureHandle = 0;
};

class FrameSink {
 public:
  /// Where refusals are logged (the engine log, or a test's collector).
  using Log = void (*)(const char* message);

  explicit FrameSink(Log log);
  /// May run while the destroying thread itself holds the lock: a script
  /// that ends the process from a frame handler or a registration's getter
  /// reaches the destructors at exit with the lock still taken.
  ~FrameSink();
  FrameSink(const FrameSink&) = delete;
  FrameSink& operator=(const FrameSink&) = delete;

  enum class Offer {
    kIgnored,  ///< no frame, or one with neither pixels nor a texture
    kDropped,  ///< the lock was busy; nothing happened
    kCopied,   ///< the pixels are in the buffer
    kRefused,  ///< the frame did not fit the registration; logged
    kTexture,  ///< a texture-only frame; the buffer is untouched
  };

  /// Engine thread. Copies the frame's pixels into the buffer when the buffer
  /// is registered for the frame's width and height and holds its size.
  Offer offer(const FrameView& frame);

  /// Script thread. Blocking and re-entrant: a frame handler may register a
  /// buffer while the drain holds the lock around it.
  void lock() {
    uv_mutex_lock(&mutex_);
    if (holds_++ == 0) holder_.store(std::this_thread::get_id(), std::memory_order_relaxed);
  }
  void unlock() {
    if (--holds_ == 0) holder_.store(std::thread::id(), std::memory_order_relaxed);
    uv_mutex_unlock(&mutex_);
  }

  /// Forgets the registered buffer; called with the lock held.
  void clearRegistration() {
    renderBuffer = nullptr;
    renderBufferSize = 0;
    frameValid = 0;
  }

  // The registration; guarded by the lock.
  uint8_t* renderBuffer = nullptr;
  uint64_t renderBufferSize = 0;
  uint8_t frameValid = 0;
  int64_t renderId = 0;
  std::string renderUserId;
  int32_t renderWidth = 0;
  int32_t renderHeight = 0;

 private:
  uv_mutex_t mutex_;
  /// How often the script thread holds the lock right now; only the holder
  /// touches it. Engine threads' try-locks are not counted.
  int holds_ = 0;
  /// The thread behind `holds_`, or none; read without the lock only by the
  /// destructor.
  std::atomic<std::thread::id> holder_{};
  Log log_;
};

}  // namespace orva::bridge
