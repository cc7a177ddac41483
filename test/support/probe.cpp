#include "probe.h"

namespace test_control {

namespace rtc = Orva::Rtc;

std::vector<std::string> Probe::events() {
  std::lock_guard lock(mutex_);
  return events_;
}

void Probe::add(std::string text) {
  std::lock_guard lock(mutex_);
  events_.push_back(std::move(text));
}

void Probe::OnSessionStateChanged(const char* session, rtc::MediaSessionState state, rtc::MediaSessionState reason) {
  add("OnSessionStateChanged(" + std::string(session != nullptr ? session : "null") + "," + std::to_string(state) +
      "," + std::to_string(reason) + ")");
}

void Probe::OnNetworkStats(const rtc::NetworkStats& stats) {
  std::string remote;
  for (const auto& r : stats.remoteStatistics) {
    remote += std::string(r.userId != nullptr ? r.userId : "null") + ":" + std::to_string(r.width) + ";";
  }
  add("OnNetworkStats(" + std::to_string(stats.InBps) + "," + remote + ")");
}

void Probe::OnPlayFilePosChanged(int fileId, int positionMs, int durationMs) {
  add("OnPlayFilePosChanged(" + std::to_string(fileId) + "," + std::to_string(positionMs) + "," +
      std::to_string(durationMs) + ")");
}

void Probe::onCameraSourceError(const std::string& sourceId, rtc::OrvaVideoCaptureError error) {
  rtc::OrvaEngine::reportOrvaSentryEvent(rtc::ERROR_TYPE_WARNING, "orva",
                                         "camera " + sourceId + " error " + std::to_string(error));
  add("onCameraSourceError(" + sourceId + "," + std::to_string(error) + ")");
}

void Probe::OnVideoFormatChanged(int width, int height) {
  add("OnVideoFormatChanged(" + std::to_string(width) + "," + std::to_string(height) + ")");
}

void Probe::OnVideoFrame(rtc::VideoFrame* frame) {
  const auto* bytes = static_cast<const unsigned char*>(frame->data);
  sdk_log_info("probe frame %dx%d", frame->width, frame->height);
  add("OnVideoFrame(" + std::to_string(frame->width) + "x" + std::to_string(frame->height) + "," +
      std::to_string(frame->size) + "," + std::to_string(frame->extra) + "," +
      std::to_string(frame->share_handle) + "," + (bytes != nullptr && frame->size > 0 ? std::to_string(bytes[0]) : "-") +
      ")");
}

}  // namespace test_control
