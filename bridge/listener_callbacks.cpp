// The engine's callbacks, on engine threads: each becomes one named event for
// the script handler, with its integers and texts in fixed places.
#include <utility>

#include "event_handler.h"
#include "pending_event.h"
#include "wrapper_state.h"

namespace Orva::Rtc {
namespace {

using orva::bridge::EventId;
using orva::bridge::EventPayload;
using orva::bridge::PendingEvent;

const char* orEmpty(const char* text) { return text != nullptr ? text : ""; }

PendingEvent event(EventId id, int32_t int1 = 0, int32_t int2 = 0, int32_t int3 = 0, std::string str1 = {},
                   std::string str2 = {}) {
  PendingEvent out;
  out.id = id;
  out.int1 = int1;
  out.int2 = int2;
  out.int3 = int3;
  out.str1 = std::move(str1);
  out.str2 = std::move(str2);
  return out;
}

// The channel information of a state change that no single stream caused.
const MediaChannelErrInfo kNoStreamInfo{NoneStream, ""};

}  // namespace

void OrvaEngineEventHandler::emit(PendingEvent&& pending) {
  if (state) orva::bridge::enqueue(*state, std::move(pending));
}

// --- Face 1 ------------------------------------------------------------------

void OrvaEngineEventHandler::OnMediaChannelStateChanged(int channelState, int reason, const MediaChannelErrInfo& info) {
  emit(event(EventId::kOnMediaChannelStateChanged, channelState, reason, info.streamType, info.errorMsg));
}

// --- Face 2 ------------------------------------------------------------------

void OrvaEngineEventHandler::OnSessionStateChanged(const char* session, MediaSessionState sessionState,
                                                   MediaSessionState reason) {
  OrvaEngine* engine = OrvaEngine::SDK();
  int32_t lastError = engine != nullptr ? engine->LastError() : 0;
  // A state change during an echo test is the test's own, not worth a report.
  RtcEngine* rtc = RtcEngine::SDK();
  IMediaService* service = rtc != nullptr ? rtc->MediaService() : nullptr;
  if (service == nullptr || !service->IsEchoStarted()) report(sessionState + 1, reason + 2, 0, "");
  emit(event(EventId::kOnSessionStateChanged, sessionState, reason, lastError, orEmpty(session)));
}

void OrvaEngineEventHandler::OnGroupStateChanged(const char* group, GroupState groupState, GroupState reason) {
  emit(event(EventId::kOnGroupStateChanged, groupState, reason, 0, orEmpty(group)));
}

void OrvaEngineEventHandler::OnNetworkStats(const NetworkStats& stats) {
  PendingEvent pending = event(EventId::kOnNetworkStats);
  pending.payload = std::make_unique<EventPayload>();
  EventPayload& payload = *pending.payload;
  payload.networkStats = stats;
  payload.networkStats.localStatistics.clear();
  payload.networkStats.remoteStatistics.clear();
  payload.remoteStatistics.reserve(stats.remoteStatistics.size());
  for (const OrvaRemoteStatistics& remote : stats.remoteStatistics) {
    orva::bridge::RemoteStatistics& copy = payload.remoteStatistics.emplace_back();
    copy.userId = orEmpty(remote.userId);
    copy.values = remote;
    copy.values.userId = nullptr;
  }
  emit(std::move(pending));
}

void OrvaEngineEventHandler::onEchoResult(const EchoCheckResult& result) {
  PendingEvent pending = event(EventId::kOnEchoResult);
  pending.payload = std::make_unique<EventPayload>();
  EventPayload& payload = *pending.payload;
  payload.resultInts[2] = result.network_result;
  payload.resultInts[3] = result.performance_result.result;
  payload.resultInts[4] = result.performance_result.reason;
  payload.resultInts[5] = result.driver_result.result;
  payload.resultInts[6] = result.driver_result.reason;
  payload.details = result.info;
  emit(std::move(pending));
}

// --- Face 3 ------------------------------------------------------------------

void OrvaEngineEventHandler::OnPlayFileStart(int fileId, int durationMs) {
  emit(event(EventId::kOnPlayFileStart, fileId, durationMs));
}

void OrvaEngineEventHandler::OnPlayFileEnd(int fileId, int reason) {
  emit(event(EventId::kOnPlayFileEnd, fileId, reason));
}

void OrvaEngineEventHandler::OnPlayFilePosChanged(int fileId, int positionMs, int durationMs) {
  emit(event(EventId::kOnPlayFilePosChanged, fileId, positionMs, durationMs));
}

void OrvaEngineEventHandler::OnPlayFileTerminate() { emit(event(EventId::kOnPlayFileTerminate)); }

// --- Face 4 ------------------------------------------------------------------

void OrvaEngineEventHandler::onTranscodingStarted(LocalMediaTranscodingError error, const std::string& message) {
  emit(event(EventId::kOnTranscodingStarted, error, 0, 0, message));
}

void OrvaEngineEventHandler::onTranscodingStopped(int code, const std::string& message) {
  emit(event(EventId::kOnTranscodingStopped, code, 0, 0, message));
}

// --- Face 5 ------------------------------------------------------------------

void OrvaEngineEventHandler::onCameraSourceStarted(const std::string& sourceId, LocalMediaTranscodingError error,
                                                   const std::string& message) {
  emit(event(EventId::kOnCameraSourceStarted, error, 0, 0, sourceId, message));
}

void OrvaEngineEventHandler::onCameraSourceStopped(const std::string& sourceId, const std::string& message) {
  emit(event(EventId::kOnCameraSourceStopped, 0, 0, 0, sourceId, message));
}

void OrvaEngineEventHandler::onCameraSourceError(const std::string& sourceId, OrvaVideoCaptureError error) {
  report(ERROR_TYPE_WARNING, CAMERA_CAPTURE_ERROR, error, "");
  emit(event(EventId::kOnCameraSourceError, error, 0, 0, sourceId));
}

void OrvaEngineEventHandler::onMicSourceError(const std::string& sourceId, OrvaAudioCaptureError error) {
  report(ERROR_TYPE_WARNING, MIC_CAPTURE_ERROR, error, "");
  emit(event(EventId::kOnMicSourceError, error, 0, 0, sourceId));
}

void OrvaEngineEventHandler::onScreenSourceStarted(const std::string& sourceId, LocalMediaTranscodingError error,
                                                   const std::string& message) {
  emit(event(EventId::kOnScreenSourceStarted, error, 0, 0, sourceId, message));
}

void OrvaEngineEventHandler::onScreenSourcePaused(const std::string& sourceId, OrvaScreenCapturePauseReason reason) {
  emit(event(EventId::kOnScreenSourcePaused, reason, 0, 0, sourceId));
}

void OrvaEngineEventHandler::onScreenSourceResumed(const std::string& sourceId, OrvaScreenCaptureResumeReason reason) {
  emit(event(EventId::kOnScreenSourceResumed, reason, 0, 0, sourceId));
}

void OrvaEngineEventHandler::onScreenSourceCovered(const std::string& sourceId) {
  emit(event(EventId::kOnScreenSourceCovered, 0, 0, 0, sourceId));
}

void OrvaEngineEventHandler::onScreenSourceStopped(const std::string& sourceId, int code) {
  emit(event(EventId::kOnScreenSourceStopped, code, 0, 0, sourceId));
}

void OrvaEngineEventHandler::onScreenSourceError(const std::string& sourceId, OrvaScreenCaptureError error) {
  report(ERROR_TYPE_WARNING, SCREEN_VIDEO_CAPTURE_ERROR, error, sourceId);
  emit(event(EventId::kOnScreenSourceError, error, 0, 0, sourceId));
}

void OrvaEngineEventHandler::onImageSourceStarted(const std::string& sourceId, LocalMediaTranscodingError error,
                                                  const std::string& message) {
  report(ERROR_TYPE_WARNING, IMAGE_CAPTURE_ERROR, error, sourceId + ":" + message);
  emit(event(EventId::kOnImageSourceStarted, error, 0, 0, sourceId, message));
}

void OrvaEngineEventHandler::onImageSourceStopped(const std::string& sourceId) {
  emit(event(EventId::kOnImageSourceStopped, 0, 0, 0, sourceId));
}

void OrvaEngineEventHandler::onCameraDidReady() { emit(event(EventId::kOnCameraDidReady)); }

void OrvaEngineEventHandler::onMicDidReady() { emit(event(EventId::kOnMicDidReady)); }

void OrvaEngineEventHandler::onUserVoiceVolume(const std::vector<VolumeInfo>& volumes, int userCount, int totalVolume) {
  PendingEvent pending = event(EventId::kOnUserVoiceVolume);
  pending.payload = std::make_unique<EventPayload>();
  pending.payload->userVolumes = volumes;
  pending.payload->resultInts[0] = userCount;
  pending.payload->resultInts[1] = totalVolume;
  emit(std::move(pending));
}

void OrvaEngineEventHandler::onDeviceChange(const std::string& deviceId, DeviceType type, DeviceState deviceState) {
  emit(event(EventId::kOnDeviceChange, type, deviceState, 0, deviceId));
}

void OrvaEngineEventHandler::onAudioDeviceCaptureVolumeChanged(int volume, bool muted) {
  emit(event(EventId::kOnAudioDeviceCaptureVolumeChanged, volume, muted ? 1 : 0));
}

void OrvaEngineEventHandler::onAudioDevicePlayoutVolumeChanged(int volume, bool muted) {
  emit(event(EventId::kOnAudioDevicePlayoutVolumeChanged, volume, muted ? 1 : 0));
}

void OrvaEngineEventHandler::onSourceSized(const std::string& sourceId, LocalMediaTranscodingSourceType type, int width,
                                           int height) {
  emit(event(EventId::kOnSourceSized, width, height, type, sourceId));
}

void OrvaEngineEventHandler::onBeautyError(const std::string& sourceId, int error, const std::string& message) {
  if (!beautyReported_.exchange(true, std::memory_order_relaxed)) {
    report(ERROR_TYPE_WARNING, BEAUTY_ERROR, error, message);
  }
  emit(event(EventId::kOnBeautyError, error, 0, 0, sourceId, message));
}

// Recording events of the engine as a whole carry no source and their own names.
void OrvaEngineEventHandler::onCameraSourceRecordStarted(const std::string& sourceId) {
  emit(event(sourceId.empty() ? EventId::kOnRecordStarted : EventId::kOnCameraSourceRecordStarted, 0, 0, 0, sourceId));
}

void OrvaEngineEventHandler::onCameraSourceRecordStopped(const std::string& sourceId) {
  emit(event(sourceId.empty() ? EventId::kOnRecordStopped : EventId::kOnCameraSourceRecordStopped, 0, 0, 0, sourceId));
}

void OrvaEngineEventHandler::onCameraSourceRecordError(const std::string& sourceId, OrvaVideoRecordError error) {
  emit(event(sourceId.empty() ? EventId::kOnRecordError : EventId::kOnCameraSourceRecordError, error, 0, 0, sourceId));
}

void OrvaEngineEventHandler::onEncoderError(int error) { emit(event(EventId::kOnEncodeError, error)); }

// --- Face 6 ------------------------------------------------------------------

void OrvaEngineEventHandler::OnStreamAdd(const char* userId, StreamType type, int streamIndex, const StringVector&,
                                         MediaChannel*) {
  emit(event(EventId::kOnStreamAdd, type, streamIndex, 0, orEmpty(userId)));
}

void OrvaEngineEventHandler::OnStreamRemove(const char* userId, StreamType type, int streamIndex, MediaChannel*) {
  emit(event(EventId::kOnStreamRemove, type, streamIndex, 0, orEmpty(userId)));
}

void OrvaEngineEventHandler::OnAudioEvent(const char* userId, AudioEvent audioEvent) {
  // The channel counts as published while both kinds of stream are up; the
  // state change is queued before the event that caused it.
  if (audioEvent == FirstSendVoice) {
    audioStreamUp_.store(true, std::memory_order_relaxed);
    if (videoStreamUp_.load(std::memory_order_relaxed)) OnMediaChannelStateChanged(0, 1, kNoStreamInfo);
  } else if (audioEvent == StoppedVoice) {
    if (videoStreamUp_.load(std::memory_order_relaxed) && audioStreamUp_.load(std::memory_order_relaxed)) {
      OnMediaChannelStateChanged(1, 3, kNoStreamInfo);
    }
    audioStreamUp_.store(false, std::memory_order_relaxed);
  }
  emit(event(EventId::kOnAudioEvent, audioEvent, 0, 0, orEmpty(userId)));
}

void OrvaEngineEventHandler::OnVideoEvent(const char* userId, VideoEvent videoEvent) {
  if (videoEvent == FirstSendImage) {
    videoStreamUp_.store(true, std::memory_order_relaxed);
    if (audioStreamUp_.load(std::memory_order_relaxed)) OnMediaChannelStateChanged(0, 1, kNoStreamInfo);
  } else if (videoEvent == StoppedImage) {
    if (audioStreamUp_.load(std::memory_order_relaxed) && videoStreamUp_.load(std::memory_order_relaxed)) {
      OnMediaChannelStateChanged(1, 3, kNoStreamInfo);
    }
    videoStreamUp_.store(false, std::memory_order_relaxed);
  }
  emit(event(EventId::kOnVideoEvent, videoEvent, 0, 0, orEmpty(userId)));
}

void OrvaEngineEventHandler::OnAudioLevelChanged(const char* userId, int level) {
  emit(event(EventId::kOnAudioLevelChanged, level, 0, 0, orEmpty(userId)));
}

void OrvaEngineEventHandler::OnVideoSizeFirst(const std::string& userId, int width, int height) {
  emit(event(EventId::kOnVideoSizeFirst, width, height, 0, userId));
}

void OrvaEngineEventHandler::OnVideoSizeChanged(const std::string& userId, int width, int height) {
  emit(event(EventId::kOnVideoSizeChanged, width, height, 0, userId));
}

void OrvaEngineEventHandler::OnVideoLevelChanged(const std::string& userId, const std::string&,
                                                 const std::string& detail) {
  emit(event(EventId::kOnVideoLevelChanged, 0, 0, 0, userId, detail));
}

void OrvaEngineEventHandler::OnAudioFilePlayError(const char* file, int error) {
  emit(event(EventId::kOnAudioFilePlayError, error, 0, 0, orEmpty(file)));
}

void OrvaEngineEventHandler::OnAudioFilePlayCompleted(const char* file) {
  emit(event(EventId::kOnAudioFilePlayCompleted, 0, 0, 0, orEmpty(file)));
}

void OrvaEngineEventHandler::OnMediaChannelTerminate() { emit(event(EventId::kOnMediaChannelTerminate)); }

// --- Face 7 ------------------------------------------------------------------

void OrvaEngineEventHandler::OnVideoEvent(VideoEvent videoEvent) { emit(event(EventId::kOnVideoEvent, videoEvent)); }

void OrvaEngineEventHandler::OnAudioEvent(AudioEvent audioEvent) { emit(event(EventId::kOnAudioEvent, audioEvent)); }

// --- Face 8 ------------------------------------------------------------------

void OrvaEngineEventHandler::OnVideoFrame(VideoFrame* frame) {
  if (!state || frame == nullptr) return;
  using Offer = orva::bridge::FrameSink::Offer;
  Offer offer = state->frames.offer({frame->data, frame->size, frame->width, frame->height, frame->share_handle});
  if (offer == Offer::kIgnored || offer == Offer::kDropped) return;
  PendingEvent pending = event(frame->share_handle != 0 ? EventId::kOnVideoFrameTexture : EventId::kOnVideoFrame);
  pending.frameType = frame->type;
  pending.frameSize = frame->size;
  pending.frameWidth = frame->width;
  pending.frameHeight = frame->height;
  pending.strideY = frame->strideY;
  pending.strideU = frame->strideU;
  pending.strideV = frame->strideV;
  pending.frameExtra = static_cast<int32_t>(frame->extra);
  pending.frameHandle = frame->share_handle;
  emit(std::move(pending));
}

}  // namespace Orva::Rtc
