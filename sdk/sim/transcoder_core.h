// Local transcoding: the sources, their started/stopped callbacks and the
// video pump that composes them. Callbacks: onTranscodingStarted to the
// transcoder face, then for each source its started callback and
// onSourceSized to the device face; stopping reverses that (per-source
// stopped callbacks, then onTranscodingStopped).
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "events.h"
#include "session_core.h"
#include "video_pump.h"

namespace orva::loopback {

class TranscoderCore {
 public:
  TranscoderCore(Events& events, SessionCore& session);

  void start(const rtc::LocalMediaTranscodingParams& params);
  void update(const rtc::LocalMediaTranscodingParams& params);
  void stop();
  void addImage(const std::string& path, int zOrder);
  void removeImage(const std::string& path);
  // Engine shutdown: stops the pump without callbacks.
  void halt();
  bool running();

  VideoPump& pump() { return pump_; }

 private:
  using Sources = std::vector<rtc::LocalMediaTranscodingSource>;
  static Sources sourcesOf(const rtc::LocalMediaTranscodingParams& params);
  // Raises the started (or stopped) callbacks of `sources`.
  void announce(const Sources& sources, bool started, const Layout& layout);
  // Re-plans and shows the current sources; announces the difference.
  void apply(const Sources& before, std::unique_lock<std::mutex>& lock);

  Events& events_;
  SessionCore& session_;
  VideoPump pump_;

  std::mutex mutex_;  // guards every field below
  bool running_ = false;
  Sources sources_;
  rtc::VideoEncParam encoder_;
  uint32_t canvasColor_ = 0;
};

// Sources in `a` that `b` lacks, matched by type and id (pure).
std::vector<rtc::LocalMediaTranscodingSource> missingSources(const std::vector<rtc::LocalMediaTranscodingSource>& a,
                                                             const std::vector<rtc::LocalMediaTranscodingSource>& b);

}  // namespace orva::loopback
