// Local transcoding at 3840x2160, 60 fps, with a camera, a screen and an
// image source: frames the engine delivers per second through a counting
// processor, and the flat-out composition rate of one thread. Both are
// printed as ratios to the 60 frames per second asked for.
#include <atomic>
#include <chrono>
#include <cstdio>
#include <thread>
#include <vector>

#include "compose.h"
#include "orva/sdk.h"

namespace {

namespace rtc = Orva::Rtc;
using Clock = std::chrono::steady_clock;

constexpr int kWidth = 3840;
constexpr int kHeight = 2160;
constexpr int kFps = 60;

struct CountingProcessor : rtc::VideoFrameProcessor {
  std::atomic<long> frames{0};
  std::atomic<uint64_t> checksum{0};  // touches each frame so none is skipped unseen
  void OnVideoFrame(rtc::VideoFrame* frame) override {
    checksum += static_cast<const uint8_t*>(frame->data)[frame->size / 2];
    ++frames;
  }
};

rtc::LocalMediaTranscodingParams params() {
  rtc::LocalMediaTranscodingParams p;
  p.videoEncoderParams.width = kWidth;
  p.videoEncoderParams.height = kHeight;
  p.videoEncoderParams.fps = kFps;
  p.canvasColor = 0x202020;
  rtc::LocalMediaTranscodingSource camera;
  camera.sourceType = rtc::kLocalMediaTranscodingSourceType_MediaSourceCamera;
  camera.cameraDeviceId = "cam-0";
  camera.rect = {0, 0, kWidth, kHeight};
  camera.zOrder = 0;
  rtc::LocalMediaTranscodingSource screen;
  screen.sourceType = rtc::kLocalMediaTranscodingSourceType_MediaSourceScreen;
  screen.screenSourceId = "1";
  screen.rect = {kWidth / 2, 0, kWidth / 2, kHeight / 2};
  screen.zOrder = 1;
  rtc::LocalMediaTranscodingSource image;
  image.sourceType = rtc::kLocalMediaTranscodingSourceType_MediaSourceImage;
  image.imagePath = "logo.png";
  image.rect = {100, kHeight - 500, 800, 400};
  image.zOrder = 2;
  p.inputSourceList.Add(camera);
  p.inputSourceList.Add(screen);
  p.inputSourceList.Add(image);
  return p;
}

double seconds(Clock::duration d) { return std::chrono::duration<double>(d).count(); }

}  // namespace

int main() {
  const auto p = params();

  // 1. The engine's video thread, paced at 60 fps, for a few seconds.
  auto* engine = rtc::OrvaEngine::SDK();
  CountingProcessor processor;
  engine->Initialize(nullptr);
  engine->SetCameraVideoProcessor(&processor);
  engine->startTranscoding(p);
  std::this_thread::sleep_for(std::chrono::milliseconds(500));  // settle
  const long startFrames = processor.frames;
  const auto start = Clock::now();
  std::this_thread::sleep_for(std::chrono::seconds(3));
  const double paced = (processor.frames - startFrames) / seconds(Clock::now() - start);
  engine->stopTranscoding();
  engine->Terminate();

  // 2. Composition alone, as fast as one thread goes.
  std::vector<rtc::LocalMediaTranscodingSource> sources;
  rtc::LocalMediaTranscodingSourceList list(p.inputSourceList);
  for (int i = 0; i < list.Size(); ++i) sources.push_back(*list.Get(i));
  const auto layout = orva::loopback::planLayout(sources, p.videoEncoderParams, p.canvasColor);
  orva::loopback::Composer composer;
  composer.prepare(layout);
  std::vector<uint8_t> frame(orva::loopback::frameBytes(layout));
  uint64_t sink = 0;
  int composed = 0;
  const auto flatStart = Clock::now();
  while (Clock::now() - flatStart < std::chrono::seconds(2)) {
    composer.compose(static_cast<uint32_t>(composed), frame.data());
    sink += frame[frame.size() / 3];
    ++composed;
  }
  const double flat = composed / seconds(Clock::now() - flatStart);

  std::printf("compose_bench: 3840x2160 camera+screen+image, asked %d fps\n", kFps);
  std::printf("  engine delivered : %7.2f fps  = %.3f x asked\n", paced, paced / kFps);
  std::printf("  one-thread compose: %7.2f fps  = %.3f x asked\n", flat, flat / kFps);
  std::printf("  (checksums %llu %llu)\n", static_cast<unsigned long long>(processor.checksum.load()),
              static_cast<unsigned long long>(sink));
  return paced >= 0.95 * kFps ? 0 : 1;
}
