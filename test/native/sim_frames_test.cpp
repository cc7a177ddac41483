// Local transcoding end to end: composed I420 frames at the asked size and
// rate from the video thread, the transcoding callbacks, and frames
// delivered through the control seam.
#include <gtest/gtest.h>

#include "compose.h"
#include "control.h"
#include "sim_recorder.h"

namespace {

using namespace sim_test;
namespace control = orva::loopback::control;

class FramesTest : public EngineTest {
 protected:
  void SetUp() override {
    EngineTest::SetUp();
    engine->setCameraVideoProcessor(&recorder);
  }
};

// Test that frames arrive at the asked size with an I420 layout, announced
// by OnVideoFormatChanged, numbered in extra, moving, and on the video thread;
// and that they show the canvas colour where no source is and the higher
// z-order where sources overlap.
TEST_F(FramesTest, FramesHaveTheAskedSizeLayoutAndSources) {
  rtc::LocalMediaTranscodingParams params;
  params.videoEncoderParams = {320, 180, 60};
  params.canvasColor = 0xff0000;
  params.inputSourceList.Add(source(kCamera, {0, 0, 160, 180}, 0, "cam-0"));
  // Listed top first: drawing must follow zOrder, not list order.
  params.inputSourceList.Add(source(kImage, {192, 0, 32, 32}, 5, "top.png"));
  params.inputSourceList.Add(source(kImage, {192, 0, 48, 48}, 1, "bottom.png"));
  engine->startTranscoding(params);
  ASSERT_TRUE(recorder.waitUntil([&] { return recorder.frameCount() >= 3; }));
  engine->stopTranscoding();

  const auto texts = recorder.texts();
  ASSERT_GE(texts.size(), 2u);
  auto first = std::find(texts.begin(), texts.end(), "OnVideoFormatChanged(320,180)");
  auto firstFrame = std::find(texts.begin(), texts.end(), "OnVideoFrame");
  EXPECT_LT(first, firstFrame);
  EXPECT_EQ(recorder.matching("OnVideoFormatChanged").size(), 1u);

  const auto frames = recorder.frames();
  for (const auto& f : frames) {
    EXPECT_EQ(f.type, rtc::kI420);
    EXPECT_EQ(f.handle, 0u);
    // Width, height, size, the three strides and where the U and V planes start.
    EXPECT_EQ((std::vector<long>{f.width, f.height, f.size, f.strideY, f.strideU, f.strideV, f.offsetU, f.offsetV}),
              (std::vector<long>{320, 180, 320 * 180 * 3 / 2, 320, 160, 160, 320 * 180, 320 * 180 + 160 * 90}));
  }
  ASSERT_GE(frames.size(), 2u);
  EXPECT_EQ(frames[1].extra, frames[0].extra + 1);
  EXPECT_NE(frames[0].bytes, frames[1].bytes) << "the camera pattern must move";
  for (auto& e : recorder.events()) EXPECT_NE(e.thread, std::this_thread::get_id());

  const auto red = orva::loopback::rgbToYuv(0xff0000);
  const auto top = orva::loopback::rgbToYuv(orva::loopback::imageColour("top.png"));
  const auto bottom = orva::loopback::rgbToYuv(orva::loopback::imageColour("bottom.png"));
  auto lumaAt = [&](int x, int y) { return frames[0].bytes[y * 320 + x]; };
  auto chromaUAt = [&](int x, int y) { return frames[0].bytes[frames[0].offsetU + (y / 2) * 160 + x / 2]; };
  EXPECT_EQ(lumaAt(202, 10), top.y);
  EXPECT_EQ(chromaUAt(202, 10), top.u);
  EXPECT_EQ(lumaAt(232, 40), bottom.y);
  EXPECT_EQ(lumaAt(300, 170), red.y);
  EXPECT_EQ(chromaUAt(300, 170), red.u);
}

// Test the callbacks around transcoding: started, then each source's
// started and sized; on stop each source's stopped, then stopped.
TEST_F(FramesTest, TranscodingReportsSourcesAroundStartAndStop) {
  rtc::LocalMediaTranscodingParams params;
  params.videoEncoderParams = {128, 72, 30};
  params.inputSourceList.Add(source(kCamera, {0, 0, 64, 36}, 0, "cam-0"));
  params.inputSourceList.Add(source(kScreen, {64, 0, 64, 36}, 1, "1"));
  params.inputSourceList.Add(source(kImage, {}, 2, "logo.png"));
  engine->MediaTranscoder()->startTranscoding(params);
  engine->stopTranscoding();
  ASSERT_TRUE(recorder.waitFor("onTranscodingStopped("));
  auto texts = recorder.texts();
  std::erase_if(texts, [](auto& t) { return t.rfind("OnVideo", 0) == 0; });
  EXPECT_EQ(texts, (std::vector<std::string>{
                       "onTranscodingStarted(0,)", "onCameraSourceStarted(cam-0,0)", "onSourceSized(cam-0,0,64,36)",
                       "onScreenSourceStarted(1,0)", "onSourceSized(1,1,64,36)", "onImageSourceStarted(logo.png,0)",
                       "onSourceSized(logo.png,2,128,72)", "onCameraSourceStopped(cam-0)", "onScreenSourceStopped(1,0)",
                       "onImageSourceStopped(logo.png)", "onTranscodingStopped(0,)"}));
}

// Test that the control seam delivers any frame, texture handles included,
// to the registered processor, and runs code on the event thread with the
// registered listener of every face; and that it says so when there is no
// processor, or no engine.
TEST_F(FramesTest, ControlSeamDeliversFramesAndRunsOnTheEngineThread) {
  control::Frame wanted;
  wanted.width = 4;
  wanted.height = 2;
  wanted.data = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
  wanted.size = 12;
  wanted.strideY = 4;
  wanted.strideU = wanted.strideV = 2;
  wanted.extra = 99;
  ASSERT_TRUE(control::deliverFrame(wanted));
  wanted.size = 4096;  // declared larger than the data: the engine's buffer is that large
  ASSERT_TRUE(control::deliverFrame(wanted));
  wanted.hasData = false;
  wanted.type = rtc::kTexture;
  wanted.handle = 0xabcdef;
  ASSERT_TRUE(control::deliverFrame(wanted));

  const auto frames = recorder.frames();
  ASSERT_EQ(frames.size(), 3u);
  EXPECT_EQ(frames[0].bytes, wanted.data);
  EXPECT_EQ(frames[1].bytes.size(), 4096u);
  EXPECT_TRUE(std::equal(wanted.data.begin(), wanted.data.end(), frames[1].bytes.begin()));
  EXPECT_EQ(frames[1].bytes[4095], 0);
  EXPECT_EQ(frames[0].extra, 99u);
  EXPECT_EQ(frames[0].offsetU, 8);
  EXPECT_EQ(frames[0].offsetV, 10);
  EXPECT_TRUE(frames[2].bytes.empty());
  EXPECT_EQ(frames[2].handle, 0xabcdefu);
  EXPECT_EQ(frames[2].type, rtc::kTexture);

  std::thread::id ranOn;
  bool sawAll = false;
  ASSERT_TRUE(control::runOnEngineThread([&](const control::Registered& r) {
    ranOn = std::this_thread::get_id();
    sawAll = r.rtc == &recorder && r.service == &recorder && r.audio == &recorder && r.transcoder == &recorder &&
             r.device == &recorder && r.channel == &recorder && r.live == &recorder && r.processor == &recorder;
    r.channel->OnAudioEvent("x", rtc::NoVoice);
  }));
  EXPECT_NE(ranOn, std::this_thread::get_id());
  EXPECT_TRUE(sawAll);
  EXPECT_EQ(recorder.texts().back(), "OnAudioEvent(x,1)");
  for (auto& e : recorder.events()) EXPECT_NE(e.thread, std::this_thread::get_id()) << e.text;

  engine->removeEventHandler(nullptr, &recorder);
  EXPECT_FALSE(control::deliverFrame(wanted));
  engine->destroy();
  EXPECT_FALSE(control::runOnEngineThread([](const control::Registered&) {}));
}

}  // namespace
