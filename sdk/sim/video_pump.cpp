#include "video_pump.h"

#include <chrono>
#include <vector>

namespace orva::loopback {

void VideoPump::show(const Layout& layout) {
  std::lock_guard lock(mutex_);
  layout_ = layout;
  changed_ = true;
  if (!running_) {
    running_ = true;
    thread_ = std::thread([this] { run(); });
  }
  wake_.notify_all();
}

void VideoPump::stop() {
  std::thread finished;
  {
    std::lock_guard lock(mutex_);
    running_ = false;
    wake_.notify_all();
    finished = std::move(thread_);
  }
  if (finished.joinable() && finished.get_id() != std::this_thread::get_id()) finished.join();
  if (finished.joinable()) finished.detach();  // stopped from a frame callback: it ends on return
}

bool VideoPump::running() {
  std::lock_guard lock(mutex_);
  return running_;
}

uint64_t VideoPump::framesComposed() {
  std::lock_guard lock(mutex_);
  return composed_;
}

uint64_t VideoPump::framesSkipped() {
  std::lock_guard lock(mutex_);
  return skipped_;
}

void VideoPump::run() {
  using Clock = std::chrono::steady_clock;
  Composer composer;
  Layout layout;
  std::vector<uint8_t> buffer;
  uint32_t counter = 0;
  Clock::duration period{};
  Clock::time_point due = Clock::now();
  rtc::VideoFrameProcessor* announcedTo = nullptr;  // who heard the current size
  int announcedWidth = 0;
  int announcedHeight = 0;

  std::unique_lock lock(mutex_);
  while (true) {
    wake_.wait_until(lock, due, [&] { return !running_ || changed_; });
    if (!running_) break;
    if (changed_) {
      layout = layout_;
      changed_ = false;
      composer.prepare(layout);
      buffer.assign(static_cast<size_t>(frameBytes(layout)), 0);
      period = std::chrono::duration_cast<Clock::duration>(std::chrono::seconds(1)) / layout.fps;
      due = Clock::now();
    }
    if (Clock::now() < due) continue;
    lock.unlock();

    composer.compose(counter, buffer.data());
    const int w = layout.width;
    const int h = layout.height;
    rtc::VideoFrame frame;
    frame.type = rtc::kI420;
    frame.data = buffer.data();
    frame.size = static_cast<int>(buffer.size());
    frame.width = w;
    frame.height = h;
    frame.strideY = w;
    frame.strideU = frame.strideV = w / 2;
    frame.dataY = buffer.data();
    const size_t lumaBytes = static_cast<size_t>(w) * static_cast<size_t>(h);
    frame.dataU = buffer.data() + lumaBytes;
    frame.dataV = buffer.data() + lumaBytes + lumaBytes / 4;
    frame.extra = counter;
    registry_.invoke<rtc::VideoFrameProcessor>([&](rtc::VideoFrameProcessor* p) {
      if (p != announcedTo || w != announcedWidth || h != announcedHeight) {
        p->OnVideoFormatChanged(w, h);
        announcedTo = p;
        announcedWidth = w;
        announcedHeight = h;
      }
      p->OnVideoFrame(&frame);
    });
    ++counter;

    lock.lock();
    ++composed_;
    due += period;
    const auto now = Clock::now();
    if (now - due > period) {
      skipped_ += static_cast<uint64_t>((now - due) / period);
      due = now;
    }
  }
}

}  // namespace orva::loopback
