// Composition of transcoded frames: colour conversion, layout planning and
// the pixels of composed I420 frames.
#include <gtest/gtest.h>

#include "compose.h"
#include "sim_recorder.h"

namespace {

namespace rtc = Orva::Rtc;
using orva::loopback::Composer;
using orva::loopback::frameBytes;
using orva::loopback::Layout;
using orva::loopback::planLayout;
using orva::loopback::rgbToYuv;
using orva::loopback::SourceKind;
using orva::loopback::Yuv;
using sim_test::kCamera;
using sim_test::kImage;
using sim_test::kScreen;
using sim_test::source;

TEST(Compose, RgbToLimitedRangeYuv) {
  const std::vector<std::pair<uint32_t, Yuv>> cases = {{0x000000, {16, 128, 128}},
                                                       {0xffffff, {235, 128, 128}},
                                                       {0xff0000, {82, 90, 240}},
                                                       {0x00ff00, {144, 54, 34}},
                                                       {0x0000ff, {41, 240, 110}}};
  for (const auto& [rgb, yuv] : cases) EXPECT_EQ(rgbToYuv(rgb), yuv) << std::hex << rgb;
}

// Test the canvas size rules: the encoder size, else the canvas size, else
// the defaults; odd sizes round down to even; the rate is capped.
TEST(Compose, CanvasSizeAndRate) {
  struct Case {
    rtc::VideoEncParam encoder;
    int width, height, fps;
  };
  const std::vector<Case> cases = {
      {{640, 360, 15}, 640, 360, 15},   {{0, 0, 0}, 1280, 720, 30},     {{0, 0, 0, 0, 0, 0, 800, 600}, 800, 600, 30},
      {{641, 361, 500}, 640, 360, 120}, {{100000, 1, 60}, 7680, 2, 60},
  };
  for (const auto& c : cases) {
    const Layout layout = planLayout({}, c.encoder, 0);
    EXPECT_EQ(layout.width, c.width);
    EXPECT_EQ(layout.height, c.height);
    EXPECT_EQ(layout.fps, c.fps);
  }
}

// Test that sources are clipped to the canvas on even edges and drawn in
// ascending z-order, ties in list order.
TEST(Compose, SourcesAreClippedAndOrdered) {
  const Layout layout = planLayout({source(kImage, {-10, 5, 30, 30}, 3), source(kCamera, {90, 90, 50, 50}, 1),
                                    source(kScreen, {200, 200, 10, 10}, 1), source(kImage, {1, 1, 0, 10}, 0)},
                                   {100, 100, 30}, 0);
  ASSERT_EQ(layout.sources.size(), 4u);
  EXPECT_EQ(layout.sources[0].zOrder, 0);
  EXPECT_EQ(layout.sources[1].kind, SourceKind::Camera);
  EXPECT_EQ(layout.sources[2].kind, SourceKind::Screen);
  EXPECT_EQ(layout.sources[3].kind, SourceKind::Image);
  const auto& image = layout.sources[3];
  EXPECT_EQ((std::vector<int>{image.x0, image.y0, image.x1, image.y1}), (std::vector<int>{0, 4, 20, 36}));
  const auto& camera = layout.sources[1];
  EXPECT_EQ((std::vector<int>{camera.x0, camera.y0, camera.x1, camera.y1}), (std::vector<int>{90, 90, 100, 100}));
  EXPECT_EQ(layout.sources[2].x1, layout.sources[2].x0) << "outside the canvas: nothing visible";
  EXPECT_EQ(layout.sources[0].x1, layout.sources[0].x0) << "zero width: nothing visible";
}

class ComposedFrame : public ::testing::Test {
 protected:
  std::vector<uint8_t> compose(const Layout& layout, uint32_t counter) {
    composer.prepare(layout);
    std::vector<uint8_t> frame(frameBytes(layout), 0xee);
    composer.compose(counter, frame.data());
    return frame;
  }
  Composer composer;
};

// Test the canvas colour in all three planes where no source is.
TEST_F(ComposedFrame, CanvasColourFillsEveryPlane) {
  const Layout layout = planLayout({}, {8, 4, 30}, 0x00ff00);
  const auto frame = compose(layout, 0);
  const Yuv green = rgbToYuv(0x00ff00);
  EXPECT_EQ(std::count(frame.begin(), frame.begin() + 32, green.y), 32);
  EXPECT_EQ(std::count(frame.begin() + 32, frame.begin() + 40, green.u), 8);
  EXPECT_EQ(std::count(frame.begin() + 40, frame.end(), green.v), 8);
}

// Test that the camera pattern moves from frame to frame within its rect
// and leaves the rest of the canvas alone.
TEST_F(ComposedFrame, CameraPatternMovesInsideItsRect) {
  const Layout layout = planLayout({source(kCamera, {0, 0, 64, 8}, 0)}, {64, 16, 30}, 0x000000);
  const auto a = compose(layout, 0);
  const auto b = compose(layout, 1);
  const std::vector<uint8_t> rowA(a.begin(), a.begin() + 64);
  const std::vector<uint8_t> rowB(b.begin(), b.begin() + 64);
  EXPECT_NE(rowA, rowB);
  // Moved left by the step: b's pixel x is a's pixel x + step.
  const int step = Composer::kCameraStep;
  EXPECT_TRUE(std::equal(rowB.begin(), rowB.end() - step, rowA.begin() + step));
  EXPECT_EQ(a[8 * 64], rgbToYuv(0).y) << "below the camera: canvas";
  EXPECT_EQ(std::vector<uint8_t>(a.begin() + 64, a.begin() + 128), rowA) << "every row of the bars is alike";
}

// Test that a higher z-order covers a lower one and that screens differ
// from cameras.
TEST_F(ComposedFrame, HigherZOrderCoversLower) {
  const Layout layout = planLayout({source(kImage, {0, 0, 16, 16}, 9, "a.png"), source(kScreen, {0, 0, 32, 32}, 2),
                                    source(kCamera, {0, 0, 32, 32}, 1)},
                                   {32, 32, 30}, 0);
  const auto frame = compose(layout, 0);
  const Yuv image = rgbToYuv(orva::loopback::imageColour("a.png"));
  EXPECT_EQ(frame[5 * 32 + 5], image.y);
  EXPECT_EQ(frame[32 * 32 + 2 * 16 + 2], image.u);
  const Layout cameraOnly = planLayout({source(kCamera, {0, 0, 32, 32}, 1)}, {32, 32, 30}, 0);
  const auto camera = compose(cameraOnly, 0);
  EXPECT_NE(frame[20 * 32 + 20], camera[20 * 32 + 20]) << "the screen covers the camera";
}

}  // namespace
