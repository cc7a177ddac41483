// A listener and frame processor for the loopback engine's tests: records
// every callback as text with the thread it arrived on, keeps the newest
// frames' bytes, and waits for what a test expects. Also the fixture of the
// end-to-end suites, which starts each test on a fresh engine, and the
// transcoding sources that tests compose.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include "control.h"
#include "orva/sdk.h"

namespace sim_test {

namespace rtc = Orva::Rtc;
using namespace std::chrono_literals;

struct FrameCopy {
  int width = 0, height = 0, size = 0, strideY = 0, strideU = 0, strideV = 0;
  long offsetU = -1, offsetV = -1;  // plane pointers relative to data
  uint32_t extra = 0;
  rtc::VideoType type = rtc::kUnknown;
  uint64_t handle = 0;
  std::vector<uint8_t> bytes;
};

class Recorder : public rtc::OrvaEngineListener, public rtc::VideoFrameProcessor {
 public:
  struct Event {
    std::string text;
    std::thread::id thread;
  };

  std::vector<Event> events() {
    std::lock_guard lock(mutex_);
    return events_;
  }
  std::vector<std::string> texts() {
    std::vector<std::string> out;
    for (auto& e : events()) out.push_back(e.text);
    return out;
  }
  // Texts that start with `prefix`, in order.
  std::vector<std::string> matching(const std::string& prefix) {
    std::vector<std::string> out;
    for (auto& t : texts()) {
      if (t.rfind(prefix, 0) == 0) out.push_back(t);
    }
    return out;
  }
  size_t count() {
    std::lock_guard lock(mutex_);
    return events_.size();
  }
  // `done` reads through the accessors above, so it runs unlocked; the change
  // counter catches events that arrive while it runs.
  bool waitUntil(const std::function<bool()>& done, std::chrono::milliseconds timeout = 5s) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    std::unique_lock lock(mutex_);
    while (true) {
      const uint64_t seen = changes_;
      lock.unlock();
      if (done()) return true;
      lock.lock();
      if (!changed_.wait_until(lock, deadline, [&] { return changes_ != seen; })) return false;
    }
  }
  // Waits until `prefix` has been seen `times` times.
  bool waitFor(const std::string& prefix, size_t times = 1, std::chrono::milliseconds timeout = 5s) {
    return waitUntil([&] { return matching(prefix).size() >= times; }, timeout);
  }
  std::vector<FrameCopy> frames() {
    std::lock_guard lock(mutex_);
    return {frames_.begin(), frames_.end()};
  }
  size_t frameCount() {
    std::lock_guard lock(mutex_);
    return frameCount_;
  }

  // Called inside OnPlayFilePosChanged before it records (tests that need
  // a slow or blocking callback).
  std::function<void()> onFilePos;

  // MediaServiceListener
  void OnSessionStateChanged(const char* s, rtc::MediaSessionState state, rtc::MediaSessionState reason) override {
    add("OnSessionStateChanged", s, state, reason);
  }
  void OnGroupStateChanged(const char* g, rtc::GroupState state, rtc::GroupState reason) override {
    add("OnGroupStateChanged", g, state, reason);
  }
  void OnNetworkStats(const rtc::NetworkStats& stats) override {
    std::string remote;
    for (auto& r : stats.remoteStatistics) remote += text(r.userId) + ":" + text(r.width) + "x" + text(r.height) + ";";
    add("OnNetworkStats", stats.localStatistics.size(), remote);
  }
  void OnUserVoiceVolume(const std::vector<rtc::VolumeInfo>& v, int users, int total) override {
    add("OnUserVoiceVolume", volumes(v), users, total);
  }
  void onEchoResult(const rtc::EchoCheckResult& r) override {
    add("onEchoResult", r.network_result, r.performance_result.result, r.driver_result.result);
  }
  void OnTerminate() override { add("OnTerminate"); }
  // AudioServiceListener
  void OnPlayFileStart(int id, int duration) override { add("OnPlayFileStart", id, duration); }
  void OnPlayFileEnd(int id, int reason) override { add("OnPlayFileEnd", id, reason); }
  void OnPlayFilePosChanged(int id, int pos, int duration) override {
    if (onFilePos) onFilePos();
    add("OnPlayFilePosChanged", id, pos, duration);
  }
  void OnPlayFileTerminate() override { add("OnPlayFileTerminate"); }
  // ILocalMediaTranscoderCallback
  void onTranscodingStarted(rtc::LocalMediaTranscodingError e, const std::string& m) override {
    add("onTranscodingStarted", e, m);
  }
  void onTranscodingStopped(int code, const std::string& m) override { add("onTranscodingStopped", code, m); }
  // IMediaDeviceCallback
  void onCameraSourceStarted(const std::string& id, rtc::LocalMediaTranscodingError e, const std::string&) override {
    add("onCameraSourceStarted", id, e);
  }
  void onCameraSourceStopped(const std::string& id, const std::string&) override { add("onCameraSourceStopped", id); }
  void onCameraSourceError(const std::string& id, rtc::OrvaVideoCaptureError e) override {
    add("onCameraSourceError", id, e);
  }
  void onScreenSourceStarted(const std::string& id, rtc::LocalMediaTranscodingError e, const std::string&) override {
    add("onScreenSourceStarted", id, e);
  }
  void onScreenSourceStopped(const std::string& id, int code) override { add("onScreenSourceStopped", id, code); }
  void onScreenSourceError(const std::string& id, rtc::OrvaScreenCaptureError e) override {
    add("onScreenSourceError", id, e);
  }
  void onImageSourceStarted(const std::string& id, rtc::LocalMediaTranscodingError e, const std::string&) override {
    add("onImageSourceStarted", id, e);
  }
  void onImageSourceStopped(const std::string& id) override { add("onImageSourceStopped", id); }
  void onSourceSized(const std::string& id, rtc::LocalMediaTranscodingSourceType t, int w, int h) override {
    add("onSourceSized", id, t, w, h);
  }
  void onUserVoiceVolume(const std::vector<rtc::VolumeInfo>& v, int users, int total) override {
    add("onUserVoiceVolume", volumes(v), users, total);
  }
  void onAudioDeviceCaptureVolumeChanged(int volume, bool muted) override {
    add("onAudioDeviceCaptureVolumeChanged", volume, muted);
  }
  void onAudioDevicePlayoutVolumeChanged(int volume, bool muted) override {
    add("onAudioDevicePlayoutVolumeChanged", volume, muted);
  }
  // MediaChannelListener
  void OnStreamAdd(const char* user, rtc::StreamType type, int index, const rtc::StringVector& streams,
                   rtc::MediaChannel* channel) override {
    add("OnStreamAdd", user, type, index, streams.get(0), channel != nullptr ? "channel" : "null");
  }
  void OnStreamRemove(const char* user, rtc::StreamType type, int index, rtc::MediaChannel*) override {
    add("OnStreamRemove", user, type, index);
  }
  void OnAudioEvent(const char* user, rtc::AudioEvent e) override { add("OnAudioEvent", user, e); }
  void OnVideoEvent(const char* user, rtc::VideoEvent e) override { add("OnVideoEvent", user, e); }
  void OnVideoSizeFirst(const std::string& user, int w, int h) override { add("OnVideoSizeFirst", user, w, h); }
  void OnAudioFilePlayCompleted(const char* file) override { add("OnAudioFilePlayCompleted", file); }
  void OnMediaChannelTerminate() override { add("OnMediaChannelTerminate"); }
  // MediaLiveListener
  void OnAudioEvent(rtc::AudioEvent e) override { add("LiveAudioEvent", e); }
  void OnVideoEvent(rtc::VideoEvent e) override { add("LiveVideoEvent", e); }
  // VideoFrameProcessor
  void OnVideoFormatChanged(int w, int h) override { add("OnVideoFormatChanged", w, h); }
  void OnVideoFrame(rtc::VideoFrame* f) override {
    FrameCopy copy{f->width, f->height, f->size,  f->strideY, f->strideU,      f->strideV,
                   -1,       -1,        f->extra, f->type,    f->share_handle, {}};
    const auto* base = static_cast<const uint8_t*>(f->data);
    if (base != nullptr) {
      copy.bytes.assign(base, base + f->size);
      if (f->dataU != nullptr) copy.offsetU = static_cast<const uint8_t*>(f->dataU) - base;
      if (f->dataV != nullptr) copy.offsetV = static_cast<const uint8_t*>(f->dataV) - base;
    }
    std::lock_guard lock(mutex_);
    frames_.push_back(std::move(copy));
    if (frames_.size() > 4) frames_.pop_front();
    ++frameCount_;
    ++changes_;
    events_.push_back({"OnVideoFrame", std::this_thread::get_id()});
    changed_.notify_all();
  }

 private:
  // Numbers and enumerations as decimals, a null char pointer as "(null)".
  template <class T>
  requires std::is_arithmetic_v<T> || std::is_enum_v<T>
  static std::string text(T value) { return std::to_string(static_cast<long long>(value)); }
  static std::string text(const char* s) { return s != nullptr ? s : "(null)"; }
  static std::string text(const std::string& s) { return s; }
  static std::string volumes(const std::vector<rtc::VolumeInfo>& v) {
    std::string out;
    for (auto& i : v) out += i.userId + ";";
    return out;
  }
  // Records "name(part,part,...)".
  template <class... Parts>
  void add(const char* name, const Parts&... parts) {
    std::string line = std::string(name) + "(";
    ((line += text(parts), line += ","), ...);
    if (sizeof...(parts) > 0) line.pop_back();
    line += ")";
    std::lock_guard lock(mutex_);
    events_.push_back({std::move(line), std::this_thread::get_id()});
    ++changes_;
    changed_.notify_all();
  }

  std::mutex mutex_;  // guards every field below
  std::condition_variable changed_;
  std::vector<Event> events_;
  std::deque<FrameCopy> frames_;
  size_t frameCount_ = 0;
  uint64_t changes_ = 0;  // bumped by every event
};

// A source of local transcoding; `id` names its camera, screen or image.
constexpr auto kCamera = rtc::kLocalMediaTranscodingSourceType_MediaSourceCamera;
constexpr auto kScreen = rtc::kLocalMediaTranscodingSourceType_MediaSourceScreen;
constexpr auto kImage = rtc::kLocalMediaTranscodingSourceType_MediaSourceImage;
inline rtc::LocalMediaTranscodingSource source(rtc::LocalMediaTranscodingSourceType type, rtc::Rect rect, int z,
                                               const char* id = "") {
  rtc::LocalMediaTranscodingSource s;
  s.sourceType = type;
  s.cameraDeviceId = s.screenSourceId = s.imagePath = id;
  s.rect = rect;
  s.zOrder = z;
  return s;
}

// Each test starts from what a fresh process finds, with the engine running
// on timings shortened for tests and `recorder` as its listener.
class EngineTest : public ::testing::Test {
 protected:
  void SetUp() override {
    orva::loopback::control::reset();
    rtc::Settings settings;
    settings.add("loopback.join.delay.ms", "5");
    settings.add("loopback.peer.delay.ms", "5");
    settings.add("loopback.stats.interval.ms", "20");
    settings.add("loopback.volume.interval.ms", "20");
    settings.add("loopback.echo.delay.ms", "20");
    settings.add("loopback.file.duration.ms", "60");
    settings.add("loopback.file.tick.ms", "20");
    ASSERT_EQ(engine->initialize(&settings, &recorder), 0);
  }
  void TearDown() override { engine->destroy(); }

  rtc::OrvaEngine* engine = rtc::OrvaEngine::SDK();
  Recorder recorder;
};

}  // namespace sim_test
