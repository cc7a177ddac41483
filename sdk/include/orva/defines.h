// Every enumeration of the engine interface. Names and values are part of the
// wire contract with script code and are kept exactly as the engine defines
// them, misspellings and gaps included. Each is 32 bits wide, and any 32-bit
// value is a valid value of it: the engine passes values it does not name.
#pragma once

namespace Orva::Rtc {

enum LogLevel : int { kLevelError = 0, kLevelWarning = 1, kLevelInfo = 2, kLevelDebug = 3 };

// Pixel format of a VideoFrame.
enum VideoType : int {
  kUnknown = 0,
  kI420 = 1,
  kIYUV = 2,
  kRGB24 = 3,
  kARGB = 4,
  kRGB565 = 5,
  kYUY2 = 6,
  kYV12 = 7,
  kUYVY = 8,
  kMJPEG = 9,
  kBGRA = 10,
  kTexture = 11,
};

enum VideoRotation : int {
  kVideoRotation_0 = 0,
  kVideoRotation_90 = 90,
  kVideoRotation_180 = 180,
  kVideoRotation_270 = 270,
};

enum NetStatus : int { None = 0, Good = 1, Normal = 2, Bad = 3 };

enum class CaptureDataType {
  CaptureDataTypeNull = 0,
  CaptureDataTypeNV12 = 1,
  CaptureDataTypeNV21 = 2,
  CaptureDataTypeI420 = 3,
  CaptureDataTypeYV12 = 4,
  CaptureDataTypeYUY2 = 5,
  CaptureDataTypeYVYU = 6,
  CaptureDataTypeUYVY = 7,
  CaptureDataTypeHDYC = 8,
  CaptureDataTypeP010 = 9,
  CaptureDataTypeXRGB = 10,
  CaptureDataTypeARGB = 11,
  CaptureDataTypeRGB24 = 12,
  CaptureDataTypeMJPEG = 13,
  CaptureDataTypeH264 = 14,
  CaptureDataTypeH265 = 15,
};

enum StreamType : int { NoneStream = -1, AudioStream = 0, VideoStream = 1 };

enum VideoSource : int {
  CameraSource = 0,
  ExternalVideoSource = 1,
  WindowCaptureSource = 2,
  ScreenCaptureSource = 3,
  MixerCaptureSource = 4,
};

enum AudioSource : int { MicrophoneSource = 0, MicrophoneAndSpeakerSource = 1, ExternalAudioSource = 2 };

enum ScreenMediaType : int {
  ScreenMediaTypeVideoOnly = 0,
  ScreenMediaTypeAudioOnly = 1,
  ScreenMediaTypeVideoAndAudio = 2,
};

enum AudioEvent : int {
  AudioEventNone = -1,
  FirstVoice = 0,
  NoVoice = 1,
  RecoverVoice = 2,
  DisconnectedVoice = 3,
  FirstSendVoice = 4,
  StoppedVoice = 5,
};

enum MediaChannelState : int {
  kMediaChannelNone = 0,
  kMediaChannelPublished = 1,
  kMediaChannelError = 2,
  kMediaChannelStoped = 3,
};

enum VideoEvent : int {
  VideoEventNone = -1,
  FirstImage = 0,
  NoImage = 1,
  RecoverImage = 2,
  DisconnectedImage = 3,
  FirstSendImage = 4,
  StoppedImage = 5,
};

enum PerformanceAlarmEvent : int {
  kPerformanceAlarmPerformanceNone = -1,
  kPerformanceAlarmPerformanceFallbacked = 0,
  kPerformanceAlarmPerformanceResumed = 1,
};

enum LocalMediaTranscodingError : int {
  kLocalMediaTranscodingError_Success = 0,
  kLocalMediaTranscodingError_Error = -1,
  kLocalMediaTranscodingError_InvalidParams = -2,
  kLocalMediaTranscodingError_NotFoundSource = -3,
  kLocalMediaTranscodingError_ImageSourceLoadFailed = -4,
};

enum LocalMediaTranscodingEvent : int {
  kLocalMediaTranscodingEvent_onTranscodingStarted = 0,
  kLocalMediaTranscodingEvent_onTranscodingStopped = 1,
  kLocalMediaTranscodingEvent_onCameraSourceStarted = 2,
  kLocalMediaTranscodingEvent_onCameraSourceStopped = 3,
  kLocalMediaTranscodingEvent_onCameraSourceError = 4,
  kLocalMediaTranscodingEvent_onImageSourceStarted = 5,
  kLocalMediaTranscodingEvent_onImageSourceStopped = 6,
  kLocalMediaTranscodingEvent_onScreenSourceStarted = 7,
  kLocalMediaTranscodingEvent_onScreenSourcePaused = 8,
  kLocalMediaTranscodingEvent_onScreenSourceResumed = 9,
  kLocalMediaTranscodingEvent_onScreenSourceCovered = 10,
  kLocalMediaTranscodingEvent_onScreenSourceStopped = 11,
  kLocalMediaTranscodingEvent_onScreenSourceError = 12,
};

enum class CameraCaptureMode { Auto = 0, Performance = 1, HighQuality = 2, Manual = 3 };

enum LocalMediaTranscodingSourceType : int {
  kLocalMediaTranscodingSourceType_MediaSourceCamera = 0,
  kLocalMediaTranscodingSourceType_MediaSourceScreen = 1,
  kLocalMediaTranscodingSourceType_MediaSourceImage = 2,
  kLocalMediaTranscodingSourceType_MediaSourceRemoteVideo = 3,
};

enum DeviceType : int { DEVICE_SPEAKER = 0, DEVICE_MIC = 1, DEVICE_CAMERA = 2 };

enum DeviceState : int { DeviceStateAdd = 0, DeviceStateRemove = 1, DeviceStateActive = 2 };

enum class AudioQuality { AudioQualitySpeech = 1, AudioQualityDefault = 2, AudioQualityMusic = 3 };

enum class VideoStreamType { VideoStreamTypeBig = 0, VideoStreamTypeSmall = 1, VideoStreamTypeSub = 2 };

enum ScreenCaptureSourceType : int {
  ScreenCaptureSourceTypeUnknown = -1,
  ScreenCaptureSourceTypeWindow = 0,
  ScreenCaptureSourceTypeScreen = 1,
};

enum OrvaVideoCaptureError : int {
  DEVICE_UNKOWN_ERROR = -1,
  DEVICE_NOT_FOUND = -2,
  DEVICE_CANNOT_CONNECT = -3,
  DEVICE_ALREADY_CONNECTED = -4,
  DEVICE_OTHER_ERROR = -5,
  DEVICE_ACCESS_DENIED = -6,
  DEVICE_LOST = -7,
  DEVICE_SIZE_NOT_SUPPORT = -8,
  DEVICE_LOW_FPS = -9,
};

enum OrvaAudioCaptureError : int {
  Unknown = -1,
  NotFound = -2,
  CannotConnect = -3,
  AlreadyConnected = -4,
  OtherError = -5,
  AccessDenied = -6,
  Lost = -7,
  MIC_START_FAIL = -1000,
  MIC_SET_PARAM_FAIL = -1001,
  MIC_STOP_FAIL = -1002,
  MIC_INIT_FAIL = -1003,
  MIC_SET_DEVICE_FAIL = -1004,
};

enum OrvaScreenCapturePauseReason : int { WINDOWS_MINIMIZING = 1, WINDOWS_OTHER_PAUSE_REASON = 2 };

enum OrvaScreenCaptureResumeReason : int { WINDOWS_SIZE_RESUME = 1, WINDOWS_OTHER_RESUME_REASON = 2 };

enum OrvaScreenCaptureError : int {
  SCREEN_CAPTURE_ERROR = 0,
  SCREEN_CAPTURE_MONITOR_LOST = 1,
  SCREEN_CAPTURE_WINDOW_LOST = 2,
  SCREEN_CAPTURE_MONITOR_INVALID = 3,
  SCREEN_CAPTURE_WINDOW_INVALID = 4,
  SCREEN_CAPTURE_MONITOR_LOW_FPS = 5,
  SCREEN_CAPTURE_WINDOW_LOW_FPS = 6,
};

enum OrvaVideoRecordError : int { VIDEO_RECORD_UNKOWN_ERROR = 0 };

// What went wrong, as the crash-report service files it.
enum SentryErrorType : int {
  SCREEN_AUDIO_CAPTURE_ERROR = 0,
  SCREEN_VIDEO_CAPTURE_ERROR = 1,
  MIC_CAPTURE_ERROR = 2,
  CAMERA_CAPTURE_ERROR = 3,
  IMAGE_CAPTURE_ERROR = 4,
  BEAUTY_ERROR = 5,
  JOIN_CHANNEL_FAILED = 6,
  JOIN_CHANNEL_CONNECT_LOST = 7,
  VIDEO_ENCODER_ERROR = 8,
};

// Severity of a crash-report event; the first argument of every report.
enum SentryReportType : int {
  ERROR_TYPE_UNKOWN = 0,
  ERROR_TYPE_INFO = 1,
  ERROR_TYPE_WARNING = 2,
  ERROR_TYPE_CRITICAL = 3,
};

enum ScreenCaptureMode : int {
  ScreenCaptureModeDefault = 0,
  ScreenCaptureModeWGC = 1,
  ScreenCaptureModeDXGI = 2,
  ScreenCaptureModeGDI = 3,
};

enum WindowCaptureMode : int { WindowCaptureModeDefault = 0, WindowCaptureModeWGC = 1, WindowCaptureModeGDI = 2 };

enum InitResult : int { Init_Successd = 0, Init_Param_Error = -1 };

enum JoinResult : int {
  Join_Successed = 0,
  Join_Param_Error = -1,
  Dns_Resolve_Failed = -2,
  Session_E_Unknow = -100,
  Session_E_Kicked = -101,
  Session_E_Network = -102,
  Session_E_Server = -103,
  Session_E_Auth = -104,
  Session_E_Forbid = -105,
  Session_E_Device = -106,
  Session_E_NoServer = -107,
};

enum EchoCheckType : int { Unkown = 0, Network = 1, Performance = 2, Driver = 3 };

enum EchoCheckResultType : int { NONE = 0, GOOD = 1, NORMAL = 2, WARNING = 3, DISABLED = 4 };

enum PerformanceCheckReason : int {
  UNKNOWN = 0,
  SYSTEM_NOT_SUPPORTED = 1,
  VIRTUAL_MACHINE = 2,
  ARM_SYSTEM = 3,
  LOW_CPU = 4,
  CPU_BLACKLIST = 5,
  NO_DEDICATED_GPU = 6,
  NO_HARDWARE_ENCODING = 7,
  LOW_GPU_MEMORY = 8,
  LOW_SYSTEM_MEMORY = 9,
};

enum DriverCheckReason : int { DRIVER_UNKNOWN = 0, DRIVER_VERSION_TOO_OLD = 1 };

enum MediaMode : int { Realtime = 0, Live = 1 };

enum PushType : int { Push_Unkown = 0, Push_Rtc = 1, Push_Rtmp = 2 };

enum MediaSessionState : int { Init = 0, Joining = 1, Joined = 2, Retrying = 3, Error = 4, Leaved = 5 };

enum NetworkType : int {
  kNetworkTypeUnknown = -1,
  kNetworkTypeDisconnected = 0,
  kNetworkTypeLAN = 1,
  kNetworkTypeWIFI = 2,
  kNetworkTypeMobile2G = 3,
  kNetworkTypeMobile3G = 4,
  kNetworkTypeMobile4G = 5,
  kNetworkTypeMobile5G = 6,
};

enum GroupState : int { GroupInit = 0, GroupJoining = 1, GroupJoined = 2, GroupError = 3 };

enum AudioRoute : int { AudioRouteSpeakerphone = 0, AudioRouteEarpiece = 1 };

enum SessionError : int {
  E_None = 0,
  E_Unknow = -100,
  E_Kicked = -101,
  E_Network = -102,
  E_Server = -103,
  E_Auth = -104,
  E_Forbid = -105,
  E_Device = -106,
  E_NoServer = -107,
  E_UrlTimeExpired = -108,
  E_EncoderError = -109,
};

}  // namespace Orva::Rtc
