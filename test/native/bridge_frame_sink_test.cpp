// Frames into the registered buffer: copy rules, refusals and the busy lock.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "bridge/frame_sink.h"

namespace orva::bridge {
namespace {

std::vector<std::string>& logged() {
  static std::vector<std::string> lines;
  return lines;
}

void collect(const char* message) { logged().emplace_back(message); }

struct Frame {
  explicit Frame(int width, int height, int size, uint8_t fill) : pixels(static_cast<size_t>(size), fill) {
    frame.width = width;
    frame.height = height;
    frame.size = size;
    frame.data = pixels.data();
  }
  std::vector<uint8_t> pixels;
  FrameView frame;
};

class FrameSinkTest : public ::testing::Test {
 protected:
  void SetUp() override { logged().clear(); }

  // Registers `buffer` (12 bytes, each 0xEE) for frames of width x height.
  void registerBuffer(FrameSink& target, int width, int height) {
    buffer.assign(12, 0xEE);
    target.lock();
    target.renderBuffer = buffer.data();
    target.renderBufferSize = buffer.size();
    target.renderWidth = width;
    target.renderHeight = height;
    target.unlock();
  }

  FrameSink sink{collect};
  std::vector<uint8_t> buffer;
};

// Test the copy conditions (width, height and size must all fit): a frame
// that fits lands at the start of the buffer and leaves the rest alone; any
// other is refused with one log line naming both sizes, byte for byte, and
// leaves the buffer untouched.
TEST_F(FrameSinkTest, CopiesOnlyFramesThatFitAndLogsTheOthers) {
  struct Case {
    const char* label;
    bool registered;
    int width, height, size;
    const char* log;  // null: copied
  };
  const Case cases[] = {
      {"exact fit", true, 4, 2, 12, nullptr},
      {"smaller size", true, 4, 2, 8, nullptr},
      {"other width", true, 6, 2, 18, "jswidth:4, jsheight:2, jssize:12, width:6, height:2, size:18"},
      {"other height", true, 4, 3, 12, "jswidth:4, jsheight:2, jssize:12, width:4, height:3, size:12"},
      {"larger than the buffer", true, 4, 2, 13, "jswidth:4, jsheight:2, jssize:12, width:4, height:2, size:13"},
      {"negative size", true, 4, 2, -1, "jswidth:4, jsheight:2, jssize:12, width:4, height:2, size:-1"},
      {"no buffer", false, 4, 2, 12, "jswidth:0, jsheight:0, jssize:0, width:4, height:2, size:12"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    logged().clear();
    buffer.assign(12, 0xEE);
    FrameSink fresh{collect};
    if (c.registered) registerBuffer(fresh, 4, 2);
    Frame frame(c.width, c.height, c.size < 0 ? 1 : c.size, 0x11);
    frame.frame.size = c.size;
    EXPECT_EQ(fresh.offer(frame.frame), c.log ? FrameSink::Offer::kRefused : FrameSink::Offer::kCopied);
    EXPECT_EQ(fresh.frameValid, c.log ? 0 : 1);
    std::vector<uint8_t> expected(12, 0xEE);
    if (!c.log) std::fill_n(expected.begin(), c.size, 0x11);
    EXPECT_EQ(buffer, expected);
    EXPECT_EQ(logged(), c.log ? std::vector<std::string>{std::string("OnOrvaEngineVideoFrame:") + c.log}
                              : std::vector<std::string>{});
  }
}

// Test the frames that are not copied: one without pixels is ignored; a
// texture leaves the buffer and its validity alone; one offered while another
// thread holds the lock is dropped at once, and the holder may take the lock
// again (re-entrant). None of them is logged.
TEST_F(FrameSinkTest, EmptyTextureAndBusyFramesLeaveTheBuffer) {
  EXPECT_EQ(sink.offer(FrameView{}), FrameSink::Offer::kIgnored);
  registerBuffer(sink, 4, 2);
  Frame copied(4, 2, 12, 0x22);
  ASSERT_EQ(sink.offer(copied.frame), FrameSink::Offer::kCopied);
  FrameView texture;
  texture.textureHandle = 0x1234;
  EXPECT_EQ(sink.offer(texture), FrameSink::Offer::kTexture);
  EXPECT_EQ(sink.frameValid, 1);

  sink.lock();
  sink.lock();
  Frame frame(4, 2, 12, 0x33);
  FrameSink::Offer offered = FrameSink::Offer::kIgnored;
  std::thread engine([&] { offered = sink.offer(frame.frame); });
  engine.join();
  EXPECT_EQ(offered, FrameSink::Offer::kDropped);
  EXPECT_EQ(buffer, copied.pixels);
  sink.unlock();
  sink.unlock();
  std::thread later([&] { offered = sink.offer(frame.frame); });
  later.join();
  EXPECT_EQ(offered, FrameSink::Offer::kCopied);
  EXPECT_TRUE(logged().empty());
}

// Test that the thread that holds the lock, even more than once, may destroy
// the sink: a script that ends the process from a frame handler reaches the
// destructors at exit that way. Destroying a held lock used to abort.
TEST(FrameSinkLifetime, TheHoldingThreadMayDestroyIt) {
  // The sanitizers run threads of their own; the child starts afresh.
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        auto sink = std::make_unique<FrameSink>(collect);
        sink->lock();
        sink->lock();
        sink.reset();
        std::exit(0);
      },
      ::testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace orva::bridge
