// A minimal application for the JavaScript test of this addon: a listener
// and frame processor that record what reaches them, so a script can see
// that raise() and deliverFrame() arrive. Like an application, it files a
// crash report for camera errors and logs each frame through sdk_log_info.
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "orva/sdk.h"

namespace test_control {

class Probe final : public Orva::Rtc::OrvaEngineListener, public Orva::Rtc::VideoFrameProcessor {
 public:
  std::vector<std::string> events();

  void OnSessionStateChanged(const char* session, Orva::Rtc::MediaSessionState state,
                             Orva::Rtc::MediaSessionState reason) override;
  void OnNetworkStats(const Orva::Rtc::NetworkStats& stats) override;
  void OnPlayFilePosChanged(int fileId, int positionMs, int durationMs) override;
  void onCameraSourceError(const std::string& sourceId, Orva::Rtc::OrvaVideoCaptureError error) override;
  void OnVideoFormatChanged(int width, int height) override;
  void OnVideoFrame(Orva::Rtc::VideoFrame* frame) override;

 private:
  void add(std::string text);
  std::mutex mutex_;  // guards events_; callbacks come from engine threads
  std::vector<std::string> events_;
};

}  // namespace test_control
