#include "transcoder_core.h"

#include <algorithm>

#include "compose.h"

namespace orva::loopback {

namespace {

bool sameSource(const rtc::LocalMediaTranscodingSource& a, const rtc::LocalMediaTranscodingSource& b) {
  return a.sourceType == b.sourceType && sourceId(a) == sourceId(b);
}

}  // namespace

std::vector<rtc::LocalMediaTranscodingSource> missingSources(const std::vector<rtc::LocalMediaTranscodingSource>& a,
                                                             const std::vector<rtc::LocalMediaTranscodingSource>& b) {
  std::vector<rtc::LocalMediaTranscodingSource> missing;
  for (const auto& s : a) {
    if (std::none_of(b.begin(), b.end(), [&](const auto& t) { return sameSource(s, t); })) missing.push_back(s);
  }
  return missing;
}

TranscoderCore::TranscoderCore(Events& events, SessionCore& session)
    : events_(events), session_(session), pump_(events.registry()) {}

TranscoderCore::Sources TranscoderCore::sourcesOf(const rtc::LocalMediaTranscodingParams& params) {
  rtc::LocalMediaTranscodingSourceList list(params.inputSourceList);  // Get is non-const
  Sources sources;
  for (int i = 0; i < list.Size(); ++i) sources.push_back(*list.Get(i));
  return sources;
}

void TranscoderCore::announce(const Sources& sources, bool started, const Layout& layout) {
  for (const auto& s : sources) {
    const std::string id = sourceId(s);
    const auto type = s.sourceType;
    // The size a source is drawn at: its rectangle, else the whole canvas.
    const int width = s.rect.width > 0 ? s.rect.width : layout.width;
    const int height = s.rect.height > 0 ? s.rect.height : layout.height;
    events_.raise<rtc::IMediaDeviceCallback>([=](rtc::IMediaDeviceCallback* l) {
      constexpr auto kOk = rtc::kLocalMediaTranscodingError_Success;
      switch (type) {
        case rtc::kLocalMediaTranscodingSourceType_MediaSourceScreen:
          started ? l->onScreenSourceStarted(id, kOk, "") : l->onScreenSourceStopped(id, 0);
          break;
        case rtc::kLocalMediaTranscodingSourceType_MediaSourceImage:
          started ? l->onImageSourceStarted(id, kOk, "") : l->onImageSourceStopped(id);
          break;
        default:
          started ? l->onCameraSourceStarted(id, kOk, "") : l->onCameraSourceStopped(id, "");
      }
      if (started) l->onSourceSized(id, type, width, height);
    });
  }
}

void TranscoderCore::apply(const Sources& before, std::unique_lock<std::mutex>&) {
  const Layout layout = planLayout(sources_, encoder_, canvasColor_);
  announce(missingSources(before, sources_), false, layout);
  announce(missingSources(sources_, before), true, layout);
  session_.setLocalVideoSize(layout.width, layout.height);
  pump_.show(layout);
}

void TranscoderCore::start(const rtc::LocalMediaTranscodingParams& params) {
  std::unique_lock lock(mutex_);
  const Sources before = running_ ? sources_ : Sources{};
  if (!running_) {
    events_.raise<rtc::ILocalMediaTranscoderCallback>(
        [](auto* l) { l->onTranscodingStarted(rtc::kLocalMediaTranscodingError_Success, ""); });
  }
  running_ = true;
  sources_ = sourcesOf(params);
  encoder_ = params.videoEncoderParams;
  canvasColor_ = params.canvasColor;
  apply(before, lock);
}

void TranscoderCore::update(const rtc::LocalMediaTranscodingParams& params) {
  std::unique_lock lock(mutex_);
  const Sources before = sources_;
  sources_ = sourcesOf(params);
  encoder_ = params.videoEncoderParams;
  canvasColor_ = params.canvasColor;
  if (running_) apply(before, lock);
}

void TranscoderCore::stop() {
  Sources sources;
  {
    std::lock_guard lock(mutex_);
    if (!running_) return;
    running_ = false;
    sources = sources_;
  }
  pump_.stop();
  announce(sources, false, Layout{});
  events_.raise<rtc::ILocalMediaTranscoderCallback>([](auto* l) { l->onTranscodingStopped(0, ""); });
}

void TranscoderCore::halt() {
  {
    std::lock_guard lock(mutex_);
    running_ = false;
  }
  pump_.stop();
}

bool TranscoderCore::running() {
  std::lock_guard lock(mutex_);
  return running_;
}

void TranscoderCore::addImage(const std::string& path, int zOrder) {
  std::unique_lock lock(mutex_);
  const Sources before = sources_;
  rtc::LocalMediaTranscodingSource image;
  image.sourceType = rtc::kLocalMediaTranscodingSourceType_MediaSourceImage;
  image.imagePath = path;
  image.zOrder = zOrder;
  // An image added on its own goes in the top-left quarter of the canvas.
  const Layout current = planLayout({}, encoder_, canvasColor_);
  image.rect = {0, 0, current.width / 2, current.height / 2};
  sources_.push_back(image);
  if (running_) apply(before, lock);
}

void TranscoderCore::removeImage(const std::string& path) {
  std::unique_lock lock(mutex_);
  const Sources before = sources_;
  std::erase_if(sources_, [&](const auto& s) {
    return s.sourceType == rtc::kLocalMediaTranscodingSourceType_MediaSourceImage && s.imagePath == path;
  });
  if (running_ && before.size() != sources_.size()) apply(before, lock);
}

}  // namespace orva::loopback
