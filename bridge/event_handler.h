// The listener the wrapper hands to the engine: the engine's seven listener
// faces plus a frame processor, in this order of bases. Its overrides run on
// engine threads; each turns its call into one queued event for script
// (listener_callbacks.cpp), so none of them touches a script value.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "orva/sdk.h"

namespace orva::bridge {
struct PendingEvent;
struct WrapperState;
}  // namespace orva::bridge

namespace Orva::Rtc {

class OrvaEngineEventHandler final : public OrvaEngineListener, public VideoFrameProcessor {
 public:
  OrvaEngineEventHandler();
  ~OrvaEngineEventHandler() override;
  OrvaEngineEventHandler(const OrvaEngineEventHandler&) = delete;
  OrvaEngineEventHandler& operator=(const OrvaEngineEventHandler&) = delete;

  // Face 1: channel state.
  void OnEngineEvent(const std::string&, int, const std::map<std::string, std::string>&) override {}
  void OnEngineLog(int, const std::string&, const std::string&) override {}
  void OnExtHeatBeatEvent() override {}
  void OnMediaChannelStateChanged(int state, int reason, const MediaChannelErrInfo& info) override;

  // Face 2: sessions, groups, statistics, echo tests.
  void OnSessionStateChanged(const char* session, MediaSessionState state, MediaSessionState reason) override;
  void OnGroupStateChanged(const char* group, GroupState state, GroupState reason) override;
  void OnNetworkStats(const NetworkStats& stats) override;
  void OnAlternateServerAvailable(const StringVector&) override {}
  void OnPerformanceAlarms(PerformanceAlarmEvent) override {}
  void OnUserVoiceVolume(const std::vector<VolumeInfo>&, int, int) override {}
  void onEchoResult(const EchoCheckResult& result) override;
  void OnTerminate() override {}

  // Face 3: audio files.
  void OnPlayFileStart(int fileId, int durationMs) override;
  void OnPlayFileEnd(int fileId, int reason) override;
  void OnPlayFilePosChanged(int fileId, int positionMs, int durationMs) override;
  void OnPlayFileTerminate() override;

  // Face 4: local transcoding.
  void onTranscodingStarted(LocalMediaTranscodingError error, const std::string& message) override;
  void onTranscodingStopped(int code, const std::string& message) override;

  // Face 5: local sources and devices.
  void onCameraSourceStarted(const std::string& sourceId, LocalMediaTranscodingError error,
                             const std::string& message) override;
  void onCameraSourceStopped(const std::string& sourceId, const std::string& message) override;
  void onCameraSourceError(const std::string& sourceId, OrvaVideoCaptureError error) override;
  void onMicSourceError(const std::string& sourceId, OrvaAudioCaptureError error) override;
  void onScreenSourceStarted(const std::string& sourceId, LocalMediaTranscodingError error,
                             const std::string& message) override;
  void onScreenSourcePaused(const std::string& sourceId, OrvaScreenCapturePauseReason reason) override;
  void onScreenSourceResumed(const std::string& sourceId, OrvaScreenCaptureResumeReason reason) override;
  void onScreenSourceCovered(const std::string& sourceId) override;
  void onScreenSourceStopped(const std::string& sourceId, int code) override;
  void onScreenSourceError(const std::string& sourceId, OrvaScreenCaptureError error) override;
  void onImageSourceStarted(const std::string& sourceId, LocalMediaTranscodingError error,
                            const std::string& message) override;
  void onImageSourceStopped(const std::string& sourceId) override;
  void onCameraDidReady() override;
  void onMicDidReady() override;
  void onUserVoiceVolume(const std::vector<VolumeInfo>& volumes, int userCount, int totalVolume) override;
  void onDeviceChange(const std::string& deviceId, DeviceType type, DeviceState state) override;
  void onTestMicVolume(int) override {}
  void onTestSpeakerVolume(int) override {}
  void onAudioDeviceCaptureVolumeChanged(int volume, bool muted) override;
  void onAudioDevicePlayoutVolumeChanged(int volume, bool muted) override;
  void onSourceSized(const std::string& sourceId, LocalMediaTranscodingSourceType type, int width, int height) override;
  void onBeautyError(const std::string& sourceId, int error, const std::string& message) override;
  void onCameraSourceRecordStarted(const std::string& sourceId) override;
  void onCameraSourceRecordStopped(const std::string& sourceId) override;
  void onCameraSourceRecordError(const std::string& sourceId, OrvaVideoRecordError error) override;
  void onEncoderError(int error) override;

  // Face 6: remote streams of a media channel.
  void OnStreamAdd(const char* userId, StreamType type, int streamIndex, const StringVector& streams,
                   MediaChannel* channel) override;
  void OnStreamRemove(const char* userId, StreamType type, int streamIndex, MediaChannel* channel) override;
  void OnAudioEvent(const char* userId, AudioEvent event) override;
  void OnVideoEvent(const char* userId, VideoEvent event) override;
  void OnAudioLevelChanged(const char* userId, int level) override;
  void OnVideoSizeFirst(const std::string& userId, int width, int height) override;
  void OnVideoSizeChanged(const std::string& userId, int width, int height) override;
  void OnVideoLevelChanged(const std::string& userId, const std::string& level, const std::string& detail) override;
  void OnAudioFilePlayError(const char* file, int error) override;
  void OnAudioFilePlayCompleted(const char* file) override;
  void OnMediaChannelTerminate() override;

  // Face 7: live push.
  void OnVideoEvent(VideoEvent event) override;
  void OnAudioEvent(AudioEvent event) override;

  // Face 8: frames of local transcoding.
  void OnVideoFormatChanged(int, int) override {}
  void OnVideoFrame(VideoFrame* frame) override;

  /// Sends an engine error to the crash-report service unless it is one that
  /// is not reported. Engine threads; touches no state of the handler.
  void report(int type, int category, int code, const std::string& message);

  /// Beauty errors are reported once until beauty is enabled again.
  void rearmBeautyReports() { beautyReported_.store(false, std::memory_order_relaxed); }

  /// The queue state shared with the event bridge, with its link to the
  /// script that receives the events; lives as long as the handler.
  std::unique_ptr<orva::bridge::WrapperState> state;

 private:
  /// Queues `event` for script; nothing without a state.
  void emit(orva::bridge::PendingEvent&& event);

  // Engine threads, without a lock: each is one byte read and written whole.
  std::atomic<bool> audioStreamUp_{false};
  std::atomic<bool> videoStreamUp_{false};
  std::atomic<bool> beautyReported_{false};
};

}  // namespace Orva::Rtc
