// --- Events delivered to the handler registered with setCallback -------------

/** Events that carry only their integer and text arguments. */
export type OrvaPlainEventName =
  | 'OnAudioEvent' | 'OnAudioFilePlayCompleted' | 'OnAudioFilePlayError' | 'OnAudioLevelChanged'
  | 'OnGroupStateChanged' | 'OnMediaChannelStateChanged' | 'OnMediaChannelTerminate' | 'OnPlayFileEnd'
  | 'OnPlayFilePosChanged' | 'OnPlayFileStart' | 'OnPlayFileTerminate' | 'OnSessionStateChanged' | 'OnStreamAdd'
  | 'OnStreamRemove' | 'OnVideoEvent' | 'OnVideoLevelChanged' | 'OnVideoSizeChanged' | 'OnVideoSizeFirst'
  | 'OnAudioDeviceCaptureVolumeChanged' | 'OnAudioDevicePlayoutVolumeChanged' | 'OnBeautyError' | 'OnCameraDidReady'
  | 'OnCameraSourceError' | 'OnCameraSourceRecordError' | 'OnCameraSourceRecordStarted'
  | 'OnCameraSourceRecordStopped' | 'OnRecordError' | 'OnRecordStarted' | 'OnRecordStopped'
  | 'OnCameraSourceStarted' | 'OnCameraSourceStopped' | 'onDeviceChange' | 'OnEncodeError' | 'OnImageSourceStarted'
  | 'OnImageSourceStopped' | 'OnMicDidReady' | 'onMicSourceError' | 'OnScreenSourceCovered' | 'OnScreenSourceError'
  | 'OnScreenSourcePaused' | 'OnScreenSourceResumed' | 'OnScreenSourceStarted' | 'OnScreenSourceStopped'
  | 'OnSourceSized' | 'OnTranscodingStarted' | 'OnTranscodingStopped';

/** A remote user's statistics inside "OnNetworkStats". */
export interface RemoteStatisticsPayload {
  userId: string;
  audioPacketLoss: number;
  width: number;
  height: number;
  frameRate: number;
  videoBitrate: number;
  audioSampleRate: number;
  audioBitrate: number;
  jitterBufferDelay: number;
  point2PointDelay: number;
  audioTotalBlockTime: number;
  audioBlockRate: number;
  videoTotalBlockTime: number;
  videoBlockRate: number;
  streamType: number;
}

export interface NetworkStatsPayload {
  OutBps: number; InBps: number; OutPps: number; InPps: number;
  Status: NetStatus; DownStatus: NetStatus; UpStatus: NetStatus;
  LiveUpPlr: number; LiveDownPlr: number; LiveRtt: number;
  RealtimeUpPlr: number; RealtimeDownPlr: number; RealtimeRtt: number;
  LiveVideoBitrate: number; LiveVideoEncFps: number; LiveVideoWidth: number; LiveVideoHeight: number;
  LiveVideoSentBytes: number; LiveAudioBitrate: number; LiveAudioSentBytes: number; LiveAudioLevel: number;
  LiveAudioEnergy: number; CpuAppUsage: number; CpuTotalUsage: number; GpuAppUsage: number; MemoryUsage: number;
  /** Present only when there are remote users. */
  remoteStatistics?: RemoteStatisticsPayload[];
}

export interface UserVoiceVolumePayload {
  userVolumes: { userId: string; microphone_volume: number; speaker_volume: number }[];
  userVolumesCount: number;
  totalVolume: number;
}

/** The five results, then one text per detail of the check. */
export interface EchoResultPayload {
  networkResult: EchoCheckResultType;
  performanceResult: EchoCheckResultType;
  performanceReason: PerformanceCheckReason;
  driverResult: EchoCheckResultType;
  driverReason: DriverCheckReason;
  [detail: string]: string | number;
}

/** A frame's metadata; its pixels are in the buffer registered with setVideoFrameRenderBuffer. */
export interface VideoFramePayload {
  type: VideoType;
  data: Uint8Array;
  id: number;
  userId: string;
  /** Whether this frame was copied into the registered buffer. */
  valid: boolean;
  size: number;
  width: number;
  height: number;
  strideY: number;
  strideU: number;
  strideV: number;
  dataY: Uint8Array;
  dataU: Uint8Array;
  dataV: Uint8Array;
  extra: number;
  /** The texture handle; non-zero for "OnVideoFrameTexture". */
  handle: number;
}

/** The payload of each event that carries one. */
export interface OrvaEventPayloads {
  OnNetworkStats: NetworkStatsPayload;
  OnUserVoiceVolume: UserVoiceVolumePayload;
  OnEchoResult: EchoResultPayload;
  OnVideoFrame: VideoFramePayload;
  OnVideoFrameTexture: VideoFramePayload;
}

export type OrvaEventName = OrvaPlainEventName | keyof OrvaEventPayloads;

/** The one function that receives every engine event, on the script thread. */
export type OrvaEventHandler = <Name extends OrvaEventName>(
  name: Name,
  int1: number,
  int2: number,
  int3: number,
  str1: string,
  str2: string,
  payload: Name extends keyof OrvaEventPayloads ? OrvaEventPayloads[Name] : Record<string, never>,
) => void;

/** Where frames of one size are copied: setVideoFrameRenderBuffer's options. */
export interface RenderBufferOptions {
  buffer: Uint8Array;
  id: number;
  userId: string;
  width: number;
  height: number;
}
