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

rtc::LocalMediaTranscodingSource source(rtc::LocalMediaTranscodingSourceType type, const char* id, rtc::Rect rect,
                                        int z) {
  rtc::LocalMediaTranscodingSource s;
  s.sourceType = type;
  s.cameraDeviceId = s.screenSourceId = s.imagePath = id;
  s.rect = rect;
  s.zOrder = z;
  return s;
}

class FramesTest : public ::testing::Test {
 protected:
  void SetUp() override {
    control::reset();
    ASSERT_EQ(engine->initialize(nullptr, &recorder), 0);
    engine->setCameraVideoProcessor(&recorder);
  }
  void TearDown() override { engine->destroy(); }

  rtc::OrvaEngine* engine = rtc::OrvaEngine::SDK();
  Recorder recorder;
};

// Test that frames arrive at the asked size with an I420 layout, announced
// by OnVideoFormatChanged, numbered in extra, moving, and on the video thread.
TEST_F(FramesTest, FramesHaveTheAskedSizeAndLayout) {
  rtc::LocalMediaTranscodingParams params;
  params.videoEncoderParams = {320, 180, 60};
  params.canvasColor = 0x000000;
  params.inputSourceList.Add(
      source(rtc::kLocalMediaTranscodingSourceType_MediaSourceCamera, "cam-0", {0, 0, 320, 180}, 0));
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
    EXPECT_EQ(f.width, 320);
    EXPECT_EQ(f.height, 180);
    EXPECT_EQ(f.size, 320 * 180 * 3 / 2);
    EXPECT_EQ(f.strideY, 320);
    EXPECT_EQ(f.strideU, 160);
    EXPECT_EQ(f.strideV, 160);
    EXPECT_EQ(f.offsetU, 320 * 180);
    EXPECT_EQ(f.offsetV, 320 * 180 + 160 * 90);
    EXPECT_EQ(f.handle, 0u);
  }
  ASSERT_GE(frames.size(), 2u);
  EXPECT_EQ(frames[1].extra, frames[0].extra + 1);
  EXPECT_NE(frames[0].bytes, frames[1].bytes) << "the camera pattern must move";
  for (auto& e : recorder.events()) EXPECT_NE(e.thread, std::this_thread::get_id());
}

// Test that the canvas colour shows where no source is and that the higher
// z-order wins where sources overlap.
TEST_F(FramesTest, CanvasShowsAroundSourcesAndZOrderWins) {
  rtc::LocalMediaTranscodingParams params;
  params.videoEncoderParams = {64, 64, 30};
  params.canvasColor = 0xff0000;
  // Listed top first: drawing must follow zOrder, not list order.
  params.inputSourceList.Add(
      source(rtc::kLocalMediaTranscodingSourceType_MediaSourceImage, "top.png", {0, 0, 32, 32}, 5));
  params.inputSourceList.Add(
      source(rtc::kLocalMediaTranscodingSourceType_MediaSourceImage, "bottom.png", {0, 0, 48, 48}, 1));
  engine->startTranscoding(params);
  ASSERT_TRUE(recorder.waitUntil([&] { return recorder.frameCount() >= 1; }));
  engine->stopTranscoding();

  const auto frame = recorder.frames().front();
  const auto red = orva::loopback::rgbToYuv(0xff0000);
  const auto top = orva::loopback::rgbToYuv(orva::loopback::imageColour("top.png"));
  const auto bottom = orva::loopback::rgbToYuv(orva::loopback::imageColour("bottom.png"));
  auto lumaAt = [&](int x, int y) { return frame.bytes[y * 64 + x]; };
  auto chromaUAt = [&](int x, int y) { return frame.bytes[frame.offsetU + (y / 2) * 32 + x / 2]; };
  EXPECT_EQ(lumaAt(10, 10), top.y);
  EXPECT_EQ(chromaUAt(10, 10), top.u);
  EXPECT_EQ(lumaAt(40, 40), bottom.y);
  EXPECT_EQ(lumaAt(60, 60), red.y);
  EXPECT_EQ(chromaUAt(60, 60), red.u);
}

// Test the callbacks around transcoding: started, then each source's
// started and sized; on stop each source's stopped, then stopped.
TEST_F(FramesTest, TranscodingReportsSourcesAroundStartAndStop) {
  rtc::LocalMediaTranscodingParams params;
  params.videoEncoderParams = {128, 72, 30};
  params.inputSourceList.Add(
      source(rtc::kLocalMediaTranscodingSourceType_MediaSourceCamera, "cam-0", {0, 0, 64, 36}, 0));
  params.inputSourceList.Add(source(rtc::kLocalMediaTranscodingSourceType_MediaSourceScreen, "1", {64, 0, 64, 36}, 1));
  params.inputSourceList.Add(source(rtc::kLocalMediaTranscodingSourceType_MediaSourceImage, "logo.png", {}, 2));
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
// to the registered processor from an engine thread, and reports when
// there is no processor.
TEST_F(FramesTest, ControlDeliversArbitraryFrames) {
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

  engine->removeEventHandler(nullptr, &recorder);
  EXPECT_FALSE(control::deliverFrame(wanted));
}

// Test that the seam runs code on the event thread with the registered
// listener of every face.
TEST_F(FramesTest, ControlRunsOnTheEngineThreadWithRegistrations) {
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
  engine->destroy();
  EXPECT_FALSE(control::runOnEngineThread([](const control::Registered&) {}));
}

}  // namespace
