// Types of orva-engine/testing: the loopback engine as a test double for an
// application's tests. docs/testing.md lists the events each verb raises.

/** A user's voice volumes, as `voiceVolumes` takes them. */
export interface VolumeInfo {
  userId?: string;
  microphone_volume?: number;
  speaker_volume?: number;
}

/** Per-user figures of `networkStats`; fields left out are 0. */
export interface RemoteStatistics {
  userId?: string | null;
  audioPacketLoss?: number; videoPacketLoss?: number; width?: number; height?: number; frameRate?: number;
  videoBitrate?: number; audioSampleRate?: number; audioBitrate?: number; jitterBufferDelay?: number;
  point2PointDelay?: number; audioTotalBlockTime?: number; audioBlockRate?: number; videoTotalBlockTime?: number;
  videoBlockRate?: number; finalLoss?: number; streamType?: number;
}

/** The local stream's figures of `networkStats`; fields left out are 0. */
export interface LocalStatistics {
  width?: number; height?: number; frameRate?: number; videoBitrate?: number; audioSampleRate?: number;
  audioBitrate?: number; streamType?: number; audioCaptureState?: number;
}

/** The figures `networkStats` raises; fields left out are 0. Integers except the usages and LiveAudioEnergy. */
export interface NetworkStats {
  OutBps?: number; InBps?: number; OutPps?: number; InPps?: number; Status?: number; DownStatus?: number;
  UpStatus?: number; LiveUpPlr?: number; LiveDownPlr?: number; LiveRtt?: number; RealtimeUpPlr?: number;
  RealtimeDownPlr?: number; RealtimeRtt?: number; LiveVideoBitrate?: number; LiveVideoEncFps?: number;
  LiveVideoWidth?: number; LiveVideoHeight?: number; LiveVideoSentBytes?: number; LiveAudioBitrate?: number;
  LiveAudioSentBytes?: number; LiveAudioLevel?: number; LiveAudioEnergy?: number; CpuAppUsage?: number;
  CpuSDKUsage?: number; CpuTotalUsage?: number; GpuAppUsage?: number; MemoryUsage?: number;
  CpuOverloadTimes?: number; localStatistics?: LocalStatistics[]; remoteStatistics?: RemoteStatistics[];
}

/** The result `echoResult` raises; fields left out are 0 (info: empty). */
export interface EchoCheckResult {
  network_result?: number;
  performance_result?: { result?: number; reason?: number };
  driver_result?: { result?: number; reason?: number };
  info?: Record<string, string>;
}

export type MediaKind = 'audio' | 'video';
export type DeviceKind = 'speaker' | 'microphone' | 'camera';

/** One call the engine received, read from its journal line `Interface.member(args)`. */
export interface JournalRecord {
  /** 'Interface.member', e.g. 'OrvaEngine.enterRoom'. */
  operation: string;
  interface: string;
  member: string;
  /** The arguments as values: pointers stay text ('0x...'); undefined if the line could not be read. */
  args: unknown[] | undefined;
  /** The journal line itself. */
  line: string;
}

export interface CrashReport {
  type: number;
  tag: string;
  message: string;
}

/** 'Interface.member', a bare member name (any interface), or a test on records. */
export type Operation = string | ((record: JournalRecord) => boolean);

export declare function remoteUserJoins(userId: string, size?: { width?: number; height?: number }): void;
export declare function remoteUserLeaves(userId: string): void;
export declare function remoteUserPublishes(userId: string, kind: MediaKind, size?: { width?: number; height?: number }): void;
export declare function remoteUserUnpublishes(userId: string, kind: MediaKind): void;
export declare function networkStats(figures: NetworkStats): void;
export declare function voiceVolumes(volumes: VolumeInfo[], totalVolume?: number): void;
export declare function devicePlugged(kind: DeviceKind, deviceId: string): void;
export declare function deviceUnplugged(kind: DeviceKind, deviceId: string): void;
export declare function cameraFails(cameraId: string, code?: number): void;
export declare function microphoneFails(micId: string, code?: number): void;
export declare function screenFails(sourceId: string, code?: number): void;
export declare function sessionDrops(room: string): void;
export declare function sessionReturns(room: string): void;
export declare function echoResult(result?: EchoCheckResult): void;
export declare function reportableError(cameraId?: string): void;

/**
 * Makes the listener call face.method(...args) on an engine thread; answers
 * whether a listener of that face was registered. Unknown names, a wrong
 * number of arguments or a wrong type throw a TypeError; a stopped engine an Error.
 */
export declare function raise(face: string, method: string, ...args: unknown[]): boolean;
/** Every 'Face.method' raise knows, with the kind of each parameter. */
export declare function signatures(): Record<string, string[]>;

export declare function journal(): JournalRecord[];
export declare function calls(operation: Operation): JournalRecord[];
export declare function waitForCall(
  operation: Operation,
  options?: { where?: (args: unknown[] | undefined, record: JournalRecord) => boolean; timeoutMs?: number },
): Promise<JournalRecord>;
export declare function clearJournal(): void;
export declare function crashReports(): CrashReport[];
export declare function reset(): void;
export declare function parseRecord(line: string): JournalRecord;

/** The test-control addon underneath, for what the rest does not cover. */
export declare const control: {
  journal(): string[];
  clearJournal(): void;
  crashReports(): CrashReport[];
  clearCrashReports(): void;
  logLines(): string[];
  clearLogLines(): void;
  liveInstances(): Record<string, number>;
  deliverFrame(frame: object): boolean;
  engineRunning(): boolean;
  reset(): void;
  [name: string]: unknown;
};
