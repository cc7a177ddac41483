#include "frame_sink.h"

#include <cstdio>
#include <cstring>

namespace orva::bridge {

FrameSink::FrameSink(Log log) : log_(log) { uv_mutex_init_recursive(&mutex_); }

FrameSink::~FrameSink() {
  if (holder_.load(std::memory_order_relaxed) == std::this_thread::get_id()) {
    while (holds_ > 0) unlock();
  }
  // A lock still held by another thread is left as it is: destroying it
  // would abort, and the process is ending anyway.
  if (holder_.load(std::memory_order_relaxed) == std::thread::id()) uv_mutex_destroy(&mutex_);
}

FrameSink::Offer FrameSink::offer(const FrameView& frame) {
  if (frame.data == nullptr && frame.textureHandle == 0) return Offer::kIgnored;
  if (uv_mutex_trylock(&mutex_) != 0) return Offer::kDropped;
  Offer result = Offer::kTexture;
  if (frame.data != nullptr) {
    bool fits = renderBuffer != nullptr && renderBufferSize != 0 && renderWidth == frame.width &&
                renderHeight == frame.height && frame.size >= 0 &&
                static_cast<uint64_t>(frame.size) <= renderBufferSize;
    if (fits) {
      // One block, planes and strides as the engine laid them out.
      std::memcpy(renderBuffer, frame.data, static_cast<size_t>(frame.size));
      frameValid = 1;
      result = Offer::kCopied;
    } else {
      char message[192];
      std::snprintf(message, sizeof message,
                    "OnOrvaEngineVideoFrame:jswidth:%d, jsheight:%d, jssize:%d, width:%d, height:%d, size:%d",
                    renderWidth, renderHeight, static_cast<int>(static_cast<uint32_t>(renderBufferSize)), frame.width,
                    frame.height, frame.size);
      log_(message);
      frameValid = 0;
      result = Offer::kRefused;
    }
  }
  uv_mutex_unlock(&mutex_);
  return result;
}

}  // namespace orva::bridge
