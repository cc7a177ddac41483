// Video frames into the buffer that script registered.
//
// The engine thread offers each frame; the script thread holds the lock for
// the whole call of a frame handler, so the buffer never changes under
// script. An engine thread that finds the lock busy drops its frame rather
// than wait: the engine never waits for script.
#pragma once

#include <uv.h>

#include <cstdint>
#include <string>

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
  void lock() { uv_mutex_lock(&mutex_); }
  void unlock() { uv_mutex_unlock(&mutex_); }

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
  Log log_;
};

}  // namespace orva::bridge
