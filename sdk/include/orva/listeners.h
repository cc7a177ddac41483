// Listener interfaces through which the engine reports events, on its own
// threads. The engine calls them by virtual slot, so the declaration order
// below is part of the binary contract. Every body is empty unless the
// interface is pure; an implementation overrides what it wants to hear.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "orva/defines.h"
#include "orva/records.h"

namespace Orva::Rtc {

class MediaChannel;

class RtcEngineListener {
 public:
  virtual void OnEngineEvent(const std::string& /*event*/, int /*code*/,
                             const std::map<std::string, std::string>& /*info*/) {}
  virtual void OnEngineLog(int /*level*/, const std::string& /*tag*/, const std::string& /*message*/) {}
  virtual void OnExtHeatBeatEvent() {}
  // The state of the local media channel changed (MediaChannelState); `info`
  // names the stream and the error, if any.
  virtual void OnMediaChannelStateChanged(int /*state*/, int /*reason*/, const MediaChannelErrInfo& /*info*/) {}
  virtual ~RtcEngineListener() = default;
};

class RtcExtEventCallback {
 public:
  virtual ~RtcExtEventCallback() = default;
  virtual void OnExtHeartBeatEvent() {}
};

class MediaServiceListener {
 public:
  virtual ~MediaServiceListener() = default;
  // `reason` is 4 when a join failed and 5 when the connection was lost.
  virtual void OnSessionStateChanged(const char* /*session*/, MediaSessionState /*state*/,
                                     MediaSessionState /*reason*/) {}
  virtual void OnGroupStateChanged(const char* /*group*/, GroupState /*state*/, GroupState /*reason*/) {}
  virtual void OnNetworkStats(const NetworkStats& /*stats*/) {}
  virtual void OnAlternateServerAvailable(const StringVector& /*servers*/) {}
  virtual void OnPerformanceAlarms(PerformanceAlarmEvent /*event*/) {}
  virtual void OnUserVoiceVolume(const std::vector<VolumeInfo>& /*volumes*/, int /*userCount*/, int /*totalVolume*/) {}
  virtual void onEchoResult(const EchoCheckResult& /*result*/) {}
  virtual void OnTerminate() {}
};

class AudioServiceListener {
 public:
  virtual ~AudioServiceListener() = default;
  virtual void OnPlayFileStart(int /*fileId*/, int /*durationMs*/) {}
  virtual void OnPlayFileEnd(int /*fileId*/, int /*reason*/) {}
  virtual void OnPlayFilePosChanged(int /*fileId*/, int /*positionMs*/, int /*durationMs*/) {}
  virtual void OnPlayFileTerminate() {}
};

class ILocalMediaTranscoderCallback {
 public:
  virtual void onTranscodingStarted(LocalMediaTranscodingError error, const std::string& message) = 0;
  virtual void onTranscodingStopped(int code, const std::string& message) = 0;
  virtual ~ILocalMediaTranscoderCallback() = default;
};

class IMediaDeviceCallback {
 public:
  virtual void onCameraSourceStarted(const std::string& sourceId, LocalMediaTranscodingError error,
                                     const std::string& message) = 0;
  virtual void onCameraSourceStopped(const std::string& sourceId, const std::string& message) = 0;
  virtual void onCameraSourceError(const std::string& sourceId, OrvaVideoCaptureError error) = 0;
  virtual void onMicSourceError(const std::string& sourceId, OrvaAudioCaptureError error) = 0;
  virtual void onScreenSourceStarted(const std::string& sourceId, LocalMediaTranscodingError error,
                                     const std::string& message) = 0;
  virtual void onScreenSourcePaused(const std::string& sourceId, OrvaScreenCapturePauseReason reason) = 0;
  virtual void onScreenSourceResumed(const std::string& sourceId, OrvaScreenCaptureResumeReason reason) = 0;
  virtual void onScreenSourceCovered(const std::string& sourceId) = 0;
  virtual void onScreenSourceStopped(const std::string& sourceId, int code) = 0;
  virtual void onScreenSourceError(const std::string& sourceId, OrvaScreenCaptureError error) = 0;
  virtual void onImageSourceStarted(const std::string& sourceId, LocalMediaTranscodingError error,
                                    const std::string& message) = 0;
  virtual void onImageSourceStopped(const std::string& sourceId) = 0;
  virtual void onCameraDidReady() = 0;
  virtual void onMicDidReady() = 0;
  virtual void onUserVoiceVolume(const std::vector<VolumeInfo>& volumes, int userCount, int totalVolume) = 0;
  virtual void onDeviceChange(const std::string& deviceId, DeviceType type, DeviceState state) = 0;
  virtual void onTestMicVolume(int volume) = 0;
  virtual void onTestSpeakerVolume(int volume) = 0;
  virtual void onAudioDeviceCaptureVolumeChanged(int volume, bool muted) = 0;
  virtual void onAudioDevicePlayoutVolumeChanged(int volume, bool muted) = 0;
  virtual void onSourceSized(const std::string& sourceId, LocalMediaTranscodingSourceType type, int width,
                             int height) = 0;
  virtual void onBeautyError(const std::string& sourceId, int error, const std::string& message) = 0;
  virtual void onCameraSourceRecordStarted(const std::string& sourceId) = 0;
  virtual void onCameraSourceRecordStopped(const std::string& sourceId) = 0;
  virtual void onCameraSourceRecordError(const std::string& sourceId, OrvaVideoRecordError error) = 0;
  virtual void onEncoderError(int error) = 0;
  virtual ~IMediaDeviceCallback() = default;
};

class MediaChannelListener {
 public:
  virtual ~MediaChannelListener() = default;
  virtual void OnStreamAdd(const char* /*userId*/, StreamType /*type*/, int /*streamIndex*/,
                           const StringVector& /*streams*/, MediaChannel* /*channel*/) {}
  virtual void OnStreamRemove(const char* /*userId*/, StreamType /*type*/, int /*streamIndex*/,
                              MediaChannel* /*channel*/) {}
  virtual void OnAudioEvent(const char* /*userId*/, AudioEvent /*event*/) {}
  virtual void OnVideoEvent(const char* /*userId*/, VideoEvent /*event*/) {}
  virtual void OnAudioLevelChanged(const char* /*userId*/, int /*level*/) {}
  virtual void OnVideoSizeFirst(const std::string& /*userId*/, int /*width*/, int /*height*/) {}
  virtual void OnVideoSizeChanged(const std::string& /*userId*/, int /*width*/, int /*height*/) {}
  virtual void OnVideoLevelChanged(const std::string& /*userId*/, const std::string& /*level*/,
                                   const std::string& /*detail*/) {}
  virtual void OnAudioFilePlayError(const char* /*file*/, int /*error*/) {}
  virtual void OnAudioFilePlayCompleted(const char* /*file*/) {}
  virtual void OnMediaChannelTerminate() {}
};

class MediaLiveListener {
 public:
  virtual ~MediaLiveListener() = default;
  virtual void OnVideoEvent(VideoEvent /*event*/) {}
  virtual void OnAudioEvent(AudioEvent /*event*/) {}
};

class OrvaServiceListener {
 public:
  virtual ~OrvaServiceListener() = default;
  virtual void OnOrvaServiceActive() {}
  virtual void OnOrvaServiceInActive(int /*reason*/) {}
  virtual void OnOrvaServiceError(int /*error*/) {}
  virtual void OnTerminate() {}
};

class AudioFrameProcessor {
 public:
  virtual ~AudioFrameProcessor() = default;
  virtual void OnAudioFrame(AudioFrame* /*frame*/) {}
};

class VideoFrameProcessor {
 public:
  virtual ~VideoFrameProcessor() = default;
  // Frames of a new size follow; called before the first frame of each size.
  virtual void OnVideoFormatChanged(int /*width*/, int /*height*/) {}
  // One frame, on an engine thread. The frame and its memory belong to the
  // engine and are valid only during the call.
  virtual void OnVideoFrame(VideoFrame* /*frame*/) {}
};

class AsyncResultHandler {
 public:
  virtual ~AsyncResultHandler() = default;
  virtual void onAsyncResult(int /*result*/) {}
};

// The listener an application hands to the engine: every face above that the
// engine itself reports through, in this order of bases.
class OrvaEngineListener : public RtcEngineListener,
                           public MediaServiceListener,
                           public AudioServiceListener,
                           public ILocalMediaTranscoderCallback,
                           public IMediaDeviceCallback,
                           public MediaChannelListener,
                           public MediaLiveListener {
 public:
  using MediaChannelListener::OnAudioEvent;
  using MediaChannelListener::OnVideoEvent;
  using MediaLiveListener::OnAudioEvent;
  using MediaLiveListener::OnVideoEvent;

  void onTranscodingStarted(LocalMediaTranscodingError, const std::string&) override {}
  void onTranscodingStopped(int, const std::string&) override {}
  void onCameraSourceStarted(const std::string&, LocalMediaTranscodingError, const std::string&) override {}
  void onCameraSourceStopped(const std::string&, const std::string&) override {}
  void onCameraSourceError(const std::string&, OrvaVideoCaptureError) override {}
  void onMicSourceError(const std::string&, OrvaAudioCaptureError) override {}
  void onScreenSourceStarted(const std::string&, LocalMediaTranscodingError, const std::string&) override {}
  void onScreenSourcePaused(const std::string&, OrvaScreenCapturePauseReason) override {}
  void onScreenSourceResumed(const std::string&, OrvaScreenCaptureResumeReason) override {}
  void onScreenSourceCovered(const std::string&) override {}
  void onScreenSourceStopped(const std::string&, int) override {}
  void onScreenSourceError(const std::string&, OrvaScreenCaptureError) override {}
  void onImageSourceStarted(const std::string&, LocalMediaTranscodingError, const std::string&) override {}
  void onImageSourceStopped(const std::string&) override {}
  void onCameraDidReady() override {}
  void onMicDidReady() override {}
  void onUserVoiceVolume(const std::vector<VolumeInfo>&, int, int) override {}
  void onDeviceChange(const std::string&, DeviceType, DeviceState) override {}
  void onTestMicVolume(int) override {}
  void onTestSpeakerVolume(int) override {}
  void onAudioDeviceCaptureVolumeChanged(int, bool) override {}
  void onAudioDevicePlayoutVolumeChanged(int, bool) override {}
  void onSourceSized(const std::string&, LocalMediaTranscodingSourceType, int, int) override {}
  void onBeautyError(const std::string&, int, const std::string&) override {}
  void onCameraSourceRecordStarted(const std::string&) override {}
  void onCameraSourceRecordStopped(const std::string&) override {}
  void onCameraSourceRecordError(const std::string&, OrvaVideoRecordError) override {}
  void onEncoderError(int) override {}
};

}  // namespace Orva::Rtc
