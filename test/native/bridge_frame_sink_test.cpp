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

  void registerBuffer(int width, int height, size_t size) {
    buffer.assign(size, 0xEE);
    sink.lock();
    sink.renderBuffer = buffer.data();
    sink.renderBufferSize = buffer.size();
    sink.renderWidth = width;
    sink.renderHeight = height;
    sink.unlock();
  }

  FrameSink sink{collect};
  std::vector<uint8_t> buffer;
};

// Test the copy conditions: width, height and size must all fit.
TEST_F(FrameSinkTest, CopiesOnlyFramesThatFit) {
  struct Case {
    const char* label;
    int width, height, size;
    FrameSink::Offer expected;
  };
  const Case cases[] = {
      {"exact fit", 4, 2, 12, FrameSink::Offer::kCopied},
      {"smaller size", 4, 2, 8, FrameSink::Offer::kCopied},
      {"other width", 6, 2, 12, FrameSink::Offer::kRefused},
      {"other height", 4, 3, 12, FrameSink::Offer::kRefused},
      {"larger than the buffer", 4, 2, 13, FrameSink::Offer::kRefused},
      {"negative size", 4, 2, -1, FrameSink::Offer::kRefused},
  };
  for (const Case& c : cases) {
    registerBuffer(4, 2, 12);
    Frame frame(c.width, c.height, c.size < 0 ? 1 : c.size, 0x11);
    frame.frame.size = c.size;
    EXPECT_EQ(sink.offer(frame.frame), c.expected) << c.label;
    EXPECT_EQ(sink.frameValid, c.expected == FrameSink::Offer::kCopied ? 1 : 0) << c.label;
  }
}

// Test that a smaller frame lands at the start and leaves the rest alone.
TEST_F(FrameSinkTest, SmallerFramesGoToTheStart) {
  registerBuffer(4, 2, 12);
  Frame frame(4, 2, 8, 0x11);
  ASSERT_EQ(sink.offer(frame.frame), FrameSink::Offer::kCopied);
  EXPECT_EQ(std::vector<uint8_t>(buffer.begin(), buffer.begin() + 8), std::vector<uint8_t>(8, 0x11));
  EXPECT_EQ(std::vector<uint8_t>(buffer.begin() + 8, buffer.end()), std::vector<uint8_t>(4, 0xEE));
}

// Test the refusal message, byte for byte, with both sizes.
TEST_F(FrameSinkTest, LogsRefusals) {
  registerBuffer(4, 2, 12);
  Frame frame(6, 2, 18, 0x11);
  ASSERT_EQ(sink.offer(frame.frame), FrameSink::Offer::kRefused);
  ASSERT_EQ(logged().size(), 1u);
  EXPECT_EQ(logged()[0], "OnOrvaEngineVideoFrame:jswidth:4, jsheight:2, jssize:12, width:6, height:2, size:18");
  EXPECT_EQ(buffer, std::vector<uint8_t>(12, 0xEE));
}

// Test that without a buffer every frame is refused and logged.
TEST_F(FrameSinkTest, RefusesWithoutABuffer) {
  Frame frame(4, 2, 12, 0x11);
  EXPECT_EQ(sink.offer(frame.frame), FrameSink::Offer::kRefused);
  EXPECT_EQ(logged().size(), 1u);
}

// Test frames without pixels: ignored, or a texture that leaves the buffer
// and its validity alone.
TEST_F(FrameSinkTest, TexturesAndEmptyFrames) {
  EXPECT_EQ(sink.offer(FrameView{}), FrameSink::Offer::kIgnored);
  registerBuffer(4, 2, 12);
  Frame copied(4, 2, 12, 0x22);
  ASSERT_EQ(sink.offer(copied.frame), FrameSink::Offer::kCopied);
  FrameView texture;
  texture.textureHandle = 0x1234;
  EXPECT_EQ(sink.offer(texture), FrameSink::Offer::kTexture);
  EXPECT_EQ(sink.frameValid, 1);
  EXPECT_TRUE(logged().empty());
}

// Test that a frame offered while another thread holds the lock is dropped
// at once, and that the holder may take the lock again (re-entrant).
TEST_F(FrameSinkTest, DropsFramesWhileTheLockIsHeld) {
  registerBuffer(4, 2, 12);
  sink.lock();
  sink.lock();
  Frame frame(4, 2, 12, 0x33);
  FrameSink::Offer offered = FrameSink::Offer::kIgnored;
  std::thread engine([&] { offered = sink.offer(frame.frame); });
  engine.join();
  EXPECT_EQ(offered, FrameSink::Offer::kDropped);
  EXPECT_EQ(buffer, std::vector<uint8_t>(12, 0xEE));
  sink.unlock();
  sink.unlock();
  std::thread later([&] { offered = sink.offer(frame.frame); });
  later.join();
  EXPECT_EQ(offered, FrameSink::Offer::kCopied);
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
