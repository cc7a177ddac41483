// VideoFrame: frames made with a size own a zeroed buffer of that size.
#include <cstdlib>

#include "live_counts.h"
#include "orva/records.h"

namespace Orva::Rtc {

using orva::loopback::countDown;
using orva::loopback::Counted;
using orva::loopback::countUp;

VideoFrame::VideoFrame() { countUp(Counted::VideoFrame); }

VideoFrame::VideoFrame(int bytes) : VideoFrame() {
  if (bytes <= 0) return;
  ownedBuffer_ = std::calloc(static_cast<size_t>(bytes), 1);
  if (ownedBuffer_ == nullptr) return;  // out of memory: an empty frame
  data = ownedBuffer_;
  size = bytes;
}

VideoFrame::~VideoFrame() {
  std::free(ownedBuffer_);
  countDown(Counted::VideoFrame);
}

}  // namespace Orva::Rtc
