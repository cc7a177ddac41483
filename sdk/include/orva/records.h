// Plain records the engine passes by value and by pointer. Their layout is the
// engine's: fields in the order below, with these types. Defaults are zero,
// false, empty and null.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "orva/defines.h"
#include "orva/export.h"
#include "orva/lists.h"

namespace Orva::Rtc {

struct Speaker {
  std::string name;
  std::string guid;
  int index = 0;
  bool isDefault = false;
  bool isCommunicationDefault = false;
};

struct Microphone {
  std::string name;
  std::string guid;
  int index = 0;
  bool isDefault = false;
  bool isCommunicationDefault = false;
};

struct CameraResolution {
  int width = 0;
  int height = 0;
  int maxFps = 0;
  CaptureDataType type = CaptureDataType::CaptureDataTypeNull;
};

struct Camera {
  std::string name;
  std::string guid;
  int index = 0;
  CameraResolutionList cameraResolutions;
};

struct MediaChannelErrInfo {
  StreamType streamType = AudioStream;
  std::string errorMsg;
};

struct OrvaLocalStatistics {
  uint32_t width = 0;
  uint32_t height = 0;
  uint32_t frameRate = 0;
  uint32_t videoBitrate = 0;
  uint32_t audioSampleRate = 0;
  uint32_t audioBitrate = 0;
  uint32_t streamType = 0;
  uint32_t audioCaptureState = 0;
};

struct OrvaRemoteStatistics {
  // Owned by whoever filled the record; assigning a new id never frees the
  // old one.
  const char* userId = nullptr;
  uint32_t audioPacketLoss = 0;
  uint32_t videoPacketLoss = 0;
  uint32_t width = 0;
  uint32_t height = 0;
  uint32_t frameRate = 0;
  uint32_t videoBitrate = 0;
  uint32_t audioSampleRate = 0;
  uint32_t audioBitrate = 0;
  uint32_t jitterBufferDelay = 0;
  uint32_t point2PointDelay = 0;
  uint32_t audioTotalBlockTime = 0;
  uint32_t audioBlockRate = 0;
  uint32_t videoTotalBlockTime = 0;
  uint32_t videoBlockRate = 0;
  uint32_t finalLoss = 0;
  uint32_t streamType = 0;
};

struct NetworkStats {
  int OutBps = 0;
  int InBps = 0;
  int OutPps = 0;
  int InPps = 0;
  NetStatus Status = None;
  NetStatus DownStatus = None;
  NetStatus UpStatus = None;
  int LiveUpPlr = 0;
  int LiveDownPlr = 0;
  int LiveRtt = 0;
  int RealtimeUpPlr = 0;
  int RealtimeDownPlr = 0;
  int RealtimeRtt = 0;
  int LiveVideoBitrate = 0;
  int LiveVideoEncFps = 0;
  int LiveVideoWidth = 0;
  int LiveVideoHeight = 0;
  int32_t LiveVideoSentBytes = 0;  // `long` of the engine's 32-bit-long platform
  int LiveAudioBitrate = 0;
  int32_t LiveAudioSentBytes = 0;  // `long` of the engine's 32-bit-long platform
  int LiveAudioLevel = 0;
  double LiveAudioEnergy = 0;
  double CpuAppUsage = 0;
  double CpuSDKUsage = 0;
  double CpuTotalUsage = 0;
  double GpuAppUsage = 0;
  double MemoryUsage = 0;
  std::vector<OrvaLocalStatistics> localStatistics;
  std::vector<OrvaRemoteStatistics> remoteStatistics;
  int CpuOverloadTimes = 0;
};

// A video frame. Frames made with a size own a zeroed buffer of that many
// bytes (`data`), which the destructor frees; frames made without one point at
// memory owned by whoever filled them. Frames are not copied.
struct ORVA_API VideoFrame {
  VideoFrame();
  explicit VideoFrame(int size);
  ~VideoFrame();
  VideoFrame(const VideoFrame&) = delete;
  VideoFrame& operator=(const VideoFrame&) = delete;

  VideoType type = kUnknown;
  const void* data = nullptr;
  int size = 0;
  int width = 0;
  int height = 0;
  int strideY = 0;
  int strideU = 0;
  int strideV = 0;
  const void* dataY = nullptr;
  const void* dataU = nullptr;
  const void* dataV = nullptr;
  uint32_t extra = 0;
  const char* sei = nullptr;  // owned by whoever filled the frame
  uint64_t share_handle = 0;  // texture handle; non-zero marks a texture frame

 private:
  void* ownedBuffer_ = nullptr;
};

struct AudioFrame {
  int8_t* data = nullptr;
  int size = 0;
  int freq = 0;
  int channels = 0;
  uint32_t extra = 0;
};

struct Rect {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
};

struct OrvaFrameRect {
  int x = 0;
  int y = 0;
  int w = 0;
  int h = 0;
};

struct Window {
  uint64_t id = 0;
  std::string title;
  Rect rect;
};

struct Screen {
  uint64_t id = 0;
  std::string name;
  Rect rect;
};

struct RenderParams {
  bool mirror = false;
  VideoRotation rotation = kVideoRotation_0;
  float alpha = 0;
};

struct SourceGreenInfo {
  bool green_enable = false;
  float green_threshold = 0;
  int64_t green_color = 0;
};

struct LocalMediaTranscodingSource {
  LocalMediaTranscodingSourceType sourceType = kLocalMediaTranscodingSourceType_MediaSourceCamera;
  std::string cameraDeviceId;
  std::string screenSourceId;
  std::string imagePath;
  std::string userId;
  Rect rect;
  int zOrder = 0;
  RenderParams renderParams;
  SourceGreenInfo greenParams;
  bool enableGreen = false;
  int fillMode = 0;
};

struct VideoEncParam {
  uint32_t width = 0;
  uint32_t height = 0;
  uint32_t fps = 0;
  uint32_t minBitrate = 0;
  uint32_t input_width = 0;
  uint32_t input_height = 0;
  uint32_t canvas_width = 0;
  uint32_t canvas_height = 0;
  uint32_t targetBitrate = 0;
};

struct LocalMediaTranscodingParams {
  LocalMediaTranscodingSourceList inputSourceList;
  VideoEncParam videoEncoderParams;
  uint32_t canvasColor = 0;  // 0xRRGGBB
  bool addVisibility = false;
  bool hideOther = false;
  bool autoSized = false;
  bool updateVideoEncParam = false;
};

struct VolumeInfo {
  std::string userId;
  int microphone_volume = 0;
  int speaker_volume = 0;
};

struct CameraCaptureParams {
  CameraCaptureMode mode = CameraCaptureMode::Auto;
  int width = 0;
  int height = 0;
  int maxfps = 0;
  CaptureDataType captureType = CaptureDataType::CaptureDataTypeNull;
};

struct ScreenCaptureSourceInfo {
  ScreenCaptureSourceType type = ScreenCaptureSourceTypeUnknown;
  std::string id;  // the source's numeric identifier in decimal
  std::string title;
  Rect rect;
  int mode = 0;
};

struct ScreenCaptureProperty {
  bool enableCaptureMouse = false;
  bool enableHighLight = false;
  bool enableHighPerformance = false;
  int highLightColor = 0;
  int highLightWidth = 0;
  bool enableCaptureChildWindow = false;
};

struct CameraRecordInfo {
  int fps = 0;
  int bitrate = 0;
  std::string path;
  std::string mp4path;
  std::string mp4path2;
  std::string pngpath;
  std::string pngpath2;
};

struct BeautyInfo {
  std::string aiModelPath;
  std::string beautyResPathV2;
  std::string beautyResPathV3;
  std::string filterResPath;
  int version = 0;
  std::string skinSegPath;
};

struct RtmpStatictis {
  uint32_t buffer_size = 0;
  uint32_t buffer_ms = 0;
  uint32_t video_packet_lost = 0;
  float video_packet_loss_rate = 0;
  uint32_t rtt = 0;
  uint32_t video_send_bps = 0;
  uint32_t audio_send_bps = 0;
  uint32_t sync_delay = 0;
  uint32_t second_delay = 0;
  int64_t send_audio_count = 0;
  int64_t send_video_count = 0;
  uint32_t target_bitrate = 0;
  uint32_t actual_bw = 0;
  int64_t rtmp_audio_pts = 0;
  int64_t rtmp_video_pts = 0;
  int64_t rtmp_pts_ms_diff = 0;
  int64_t rtmp_dts_ms_diff = 0;
  int64_t audio_first_time = 0;
  int64_t video_first_time = 0;
  int64_t audio_pkt_ts = 0;
  int64_t video_pkt_ts = 0;
  int64_t rtmp_video_dts = 0;
  int32_t max_video_sent_delta = 0;
  int32_t max_video_get_delta = 0;
  int32_t max_video_encode_delta = 0;
  int32_t max_video_get_from_queue_delta = 0;
};

struct DowngradeParam {
  int minFps = 0;
  int maxFps = 0;
};

struct PerformanceCheckResult {
  EchoCheckResultType result = NONE;
  PerformanceCheckReason reason = UNKNOWN;
};

struct DriverCheckResult {
  EchoCheckResultType result = NONE;
  DriverCheckReason reason = DRIVER_UNKNOWN;
};

struct EchoCheckResult {
  EchoCheckResultType network_result = NONE;
  PerformanceCheckResult performance_result;
  DriverCheckResult driver_result;
  std::map<std::string, std::string> info;
};

struct AdapterInfo {
  std::string description;
  int vendorId = 0;
  int deviceId = 0;
  int dedicatedVideoMemory = 0;  // bytes
};

struct AudioFileParam {
  const char* path = nullptr;  // owned by whoever filled the record
  int pos = 0;
  int loopCount = 0;
  int from = 0;
  int to = 0;
  bool publish = false;
};

}  // namespace Orva::Rtc
