// The engine's sub-objects: devices, media channels, live push, audio files,
// local transcoding, beauty filters, the media service and the background
// service. All are interfaces owned by the engine; callers reach them through
// the engine's accessors and never delete them. Virtual slots follow the
// declaration order; overloads of one name are adjacent.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "orva/defines.h"
#include "orva/listeners.h"
#include "orva/lists.h"
#include "orva/records.h"

namespace Orva::Rtc {

class MediaDevice {
 public:
  virtual int Initialize(Settings* settings, IMediaDeviceCallback* callback) = 0;
  virtual SpeakerList Speakers() = 0;
  virtual MicrophoneList Microphones() = 0;
  virtual CameraList Cameras() = 0;
  virtual int SetMicrophone(const std::string& guid) = 0;
  virtual int SetMicrophone(int index) = 0;
  virtual Microphone GetCurrentMicrophone() = 0;
  virtual int SetSpeaker(const std::string& guid) = 0;
  virtual int SetSpeaker(int index) = 0;
  virtual Speaker GetCurrentSpeaker() = 0;
  virtual int SetCameraRotation(VideoRotation rotation) = 0;
  virtual int StartSpeakerTest(const char* audioFile, AsyncResultHandler* handler) = 0;
  virtual int StartSpeakerTest(const char* audioFile) = 0;
  virtual void StopSpeakerTest() = 0;
  virtual int StartMicrophoneTest() = 0;
  virtual void StopMicrophoneTest() = 0;
  virtual int OpenCamera(const char* guid) = 0;
  virtual int OpenCamera(int index) = 0;
  virtual void EnableCameraGreenScreen(const std::string& cameraId, const SourceGreenInfo& info) = 0;
  virtual int OpenCameraByGuid(const char* guid) = 0;
  virtual void OpenCameraAsync(int index, AsyncResultHandler* handler) = 0;
  virtual Camera GetCurrentCamera() = 0;
  virtual void SetCameraCaptureParams(const std::string& cameraId, CameraCaptureParams& params) = 0;
  virtual int MuteSpeaker(bool mute) = 0;
  virtual int PauseCamera(bool pause) = 0;
  virtual void CloseCamera(const char* guid) = 0;
  virtual void CloseCamera() = 0;
  virtual bool GetSpeakerMute() = 0;
  virtual int MuteMicrophone(bool mute) = 0;
  virtual bool GetMicrophoneMute() = 0;
  virtual int SetMicrophoneVolume(int volume) = 0;
  virtual int SetMixExternalAudioVolume(int volume) = 0;
  virtual int GetMicrophoneVolume() = 0;
  virtual int SetSpeakerVolume(int volume) = 0;
  virtual int GetSpeakerVolume() = 0;
  virtual int SetSystemSpeakerVolume(int volume) = 0;
  virtual int SetLoudSpeakerStatus(bool on) = 0;
  virtual int StartPreview(void* window, const char* guid) = 0;
  virtual int StartPreview(void* window) = 0;
  virtual void StopPreview(const char* guid) = 0;
  virtual void StopPreview() = 0;
  virtual int SetMicrophoneEnhanceLevel(int level) = 0;
  virtual int SetCameraVideoProcessor(VideoFrameProcessor* processor, const char* guid) = 0;
  virtual int SetCameraVideoProcessor(VideoFrameProcessor* processor) = 0;
  virtual int SetCameraVideoProcessorByGuid(VideoFrameProcessor* processor, const char* guid) = 0;
  virtual void ScaleMicrophone(float scale) = 0;
  virtual void ScaleSpeaker(float scale) = 0;
  virtual int StartCaptureWindow(Window window, int mode) = 0;
  virtual int StartCaptureScreen(Screen screen, int mode) = 0;
  virtual int StartCaptureScreen(void* monitor) = 0;
  virtual int StartCaptureScreen(const char* screenId) = 0;
  virtual void UpdateScreenCaptureProperty(const std::string& sourceId, const ScreenCaptureProperty& property) = 0;
  virtual int StartScreenAudioCapture() = 0;
  virtual int StopScreenAudioCapture() = 0;
  virtual void SetScreenAudioCaptureDeviceId(const std::string& deviceId) = 0;
  virtual int SetScreenAudioCaptureVolume(int volume) = 0;
  virtual void StopCaptureScreen(const char* screenId) = 0;
  virtual void StopCaptureWindow(const char* windowId) = 0;
  virtual WindowList Windows() = 0;
  virtual ScreenList Screens() = 0;
  virtual void SetWindowCaptureProcessor(VideoFrameProcessor* processor) = 0;
  virtual void SetScreenCaptureProcessor(VideoFrameProcessor* processor) = 0;
  virtual void SetScreenAudioCaptureProcessor(AudioFrameProcessor* processor) = 0;
  virtual void SetMicCaptureProcessor(AudioFrameProcessor* processor) = 0;
  virtual int GetCurrentAudioLevel(bool smoothed) = 0;
  virtual int GetCurrentAudioLevel() = 0;
  virtual void CloseAllDevice() = 0;
  virtual void enableCameraVideoProcessor(bool enable) = 0;
  virtual void startCameraRecord(const std::string& cameraId, const CameraRecordInfo& info) = 0;
  virtual void stopCameraRecord(const std::string& cameraId) = 0;
  virtual Microphone GetSystemMicDevice() = 0;
  virtual Speaker GetSystemSpeakerDevice() = 0;
  virtual int GetSystemSpeakerVolume() = 0;
  virtual int GetSystemMicVolume() = 0;
  virtual bool GetSystemMicMute() = 0;
  virtual bool GetSystemSpeakerMute() = 0;
  virtual void EnableAudioAGC(bool enable, int level) = 0;
  virtual void EnableAudioAEC(bool enable) = 0;
  virtual void EnableAudioANS(bool enable, int level) = 0;
  virtual bool GetAGCStatus() = 0;
  virtual bool GetAECStatus() = 0;
  virtual bool GetANSStatus() = 0;
  virtual void EnableStereoMicrophone(bool enable) = 0;
  virtual bool GetStereoMicrophoneStatus() = 0;
  virtual void EnableAudioCaptureFixDelay(bool enable, int delayMs) = 0;
  virtual void enableCameraVideoYuvOutput(bool enable) = 0;
  virtual void startCameraSourceWithCaptureParams(const std::string& cameraId, CameraCaptureParams& params) = 0;
  virtual void createTraceWindow(int x, int y, const std::string& title, bool topMost, int flags) = 0;
  virtual void destroyTraceWindow() = 0;
  virtual ~MediaDevice() = default;
};

class MediaChannel {
 public:
  virtual int Initialize(Settings* settings, MediaChannelListener* listener) = 0;
  virtual void Terminate() = 0;
  virtual int SetSimulcastMode(bool enable) = 0;
  virtual void SetVideoEncoderParam(const VideoEncParam& param) = 0;
  virtual int PublishVideo(VideoSource source, const std::string& sourceId) = 0;
  virtual int PublishVideo(VideoSource source) = 0;
  virtual void UnPublishVideo() = 0;
  virtual int ChangeVideoSource(VideoSource source, const std::string& sourceId) = 0;
  virtual int ChangeVideoSource(VideoSource source) = 0;
  virtual void ReConfigVideo(Settings* settings) = 0;
  virtual void MirrorDeliveredFrame(bool mirror) = 0;
  virtual int PauseVideo(bool pause) = 0;
  virtual int SetVideoPauseImage(void* image, int fps) = 0;
  virtual int SetVideoPauseImage(VideoFrame* frame, int fps) = 0;
  virtual int PublishAudio(AudioSource source) = 0;
  virtual int ChangeAudioSource(AudioSource source) = 0;
  virtual void UnPublishAudio() = 0;
  virtual int MixOutput(bool mix) = 0;
  virtual int MuteAudio(bool mute) = 0;
  virtual int StartPlayAudioFile(const char* file, bool loop, bool publish) = 0;
  virtual void SetPlayAudioFileVolume(float volume) = 0;
  virtual void StopPlayAudioFile() = 0;
  virtual int MuteOtherAudio(const char* userId, bool mute) = 0;
  virtual int StartRender(const char* userId, void* window, int mode) = 0;
  virtual int SetRenderCropping(const char* userId, int x, int y, int width, int height) = 0;
  virtual int StartRenderWithSetting(const char* userId, void* window, Settings* settings) = 0;
  virtual int UpdateRenderSetting(const char* userId, Settings* settings) = 0;
  virtual void StopRender(const char* userId) = 0;
  virtual void StopAllRender() = 0;
  virtual int StartPlayout(const char* userId) = 0;
  virtual void StopPlayout(const char* userId) = 0;
  virtual void PauseRender(const char* userId, bool pause) = 0;
  virtual void PauseUser(const char* userId, bool pause) = 0;
  virtual void StopAllPlayout(bool stop) = 0;
  virtual int DeliverVideoFrame(VideoFrame* frame, int cropX, int cropY, int cropWidth, int cropHeight) = 0;
  virtual int DeliverVideoFrame(VideoFrame* frame) = 0;
  virtual int DeliverTextureVideoFrame(void* texture, const char* sourceId) = 0;
  virtual void SendSei(const std::string& sei) = 0;
  virtual int DeliverAudioFrame(int8_t* data, int size, int freq, int channels, uint32_t extra) = 0;
  virtual int DeliverAudioFrame(AudioFrame* frame) = 0;
  virtual int AddVideoProcessor(const char* id, VideoFrameProcessor* processor) = 0;
  virtual void RemoveVideoProcessor(const char* id) = 0;
  virtual void RemoveAllVideoProcessor() = 0;
  virtual int AddAudioProcessor(const char* id, AudioFrameProcessor* processor) = 0;
  virtual void RemoveAudioProcessor(const char* id) = 0;
  virtual void UpdateSetting(std::map<std::string, std::string> settings) = 0;
  virtual void Downgrade(const DowngradeParam& param) = 0;
  virtual bool isLink() = 0;
  virtual ~MediaChannel() = default;
};

class MediaLive {
 public:
  virtual int Initialize(Settings* settings) = 0;
  virtual void Terminate() = 0;
  virtual int StartLive(const char* url) = 0;
  virtual void StopLive() = 0;
  virtual int StartRender(void* window) = 0;
  virtual void StopRender() = 0;
  virtual ~MediaLive() = default;
};

class AudioService {
 public:
  virtual int Initialize(Settings* settings, AudioServiceListener* listener) = 0;
  virtual void StartPlayFile(int fileId, const AudioFileParam* param) = 0;
  virtual void PauseFile(int fileId) = 0;
  virtual void ResumeFile(int fileId) = 0;
  virtual void StopPlayFile(int fileId) = 0;
  virtual void SeekFile(int fileId, int positionMs) = 0;
  virtual void SetFileAllVolume(int volume) = 0;
  virtual void SetFilePublishVolume(int fileId, int volume) = 0;
  virtual void SetFileLocalVolume(int fileId, int volume) = 0;
  virtual int GetFilePos(int fileId) = 0;
  virtual int GetFileDuration(const char* path) = 0;
  virtual void Terminate() = 0;
  virtual ~AudioService() = default;
};

class LocalMediaTranscoder {
 public:
  virtual int Initialize(Settings* settings, ILocalMediaTranscoderCallback* callback) = 0;
  virtual void startTranscoding(const LocalMediaTranscodingParams& params) = 0;
  virtual void updateTranscodingParams(const LocalMediaTranscodingParams& params) = 0;
  virtual void stopTranscoding() = 0;
  virtual void addImageSource(const std::string& imagePath, int zOrder) = 0;
  virtual void removeImageSource(const std::string& imagePath) = 0;
  virtual void setMixedVideoRenderView(void* window) = 0;
  virtual void setRenderFPS(int fps) = 0;
  virtual bool isSupportHevcEncode() = 0;
  virtual void startRemoteTranscoding(const LocalMediaTranscodingParams& params) = 0;
  virtual void updateRemoteTranscodingParams(const LocalMediaTranscodingParams& params) = 0;
  virtual void stopRemoteTranscoding() = 0;
  virtual void setRemoteVideoRenderView(void* window) = 0;
  virtual ~LocalMediaTranscoder() = default;
};

class IBeautyEngine {
 public:
  virtual void EnableBeauty(const std::string& cameraId) = 0;
  virtual void SetBeautyParam(const std::string& key, const std::string& value) = 0;
  virtual void DisableBeauty(const std::string& cameraId) = 0;
  virtual void EnableBeautyParam(const std::string& cameraId, const BeautyInfo& info) = 0;
  virtual void EnableBeautySkinSeg(const std::string& cameraId, bool enable) = 0;
  virtual void SetBeautyFace2DPath(const std::string& path) = 0;
  virtual ~IBeautyEngine() = default;
};

class IMediaService {
 public:
  virtual MediaChannel* RealtimeChannel() = 0;
  virtual MediaChannel* LiveChannel() = 0;
  virtual MediaChannel* LightLiveChannel() = 0;
  virtual MediaChannel* GroupChannel() = 0;
  virtual MediaChannel* FusionLiveRtcChannel() = 0;
  virtual MediaDevice* Device() = 0;
  virtual AudioService* Audio() = 0;
  virtual MediaLive* Live() = 0;
  virtual LocalMediaTranscoder* MediaTranscoder() = 0;
  virtual IBeautyEngine* BeautyEngine() = 0;
  virtual int JoinSession(const char* session, Settings* settings) = 0;
  virtual void LeaveSession() = 0;
  virtual int Initialize(Settings* settings, MediaServiceListener* listener, void* reserved1, void* reserved2) = 0;
  virtual int Initialize(Settings* settings, MediaServiceListener* listener) = 0;
  virtual int JoinGroup(const char* group, Settings* settings) = 0;
  virtual void LeaveGroup() = 0;
  virtual void Terminate() = 0;
  virtual int LastError() = 0;
  virtual void SetNetworkType(NetworkType type) = 0;
  virtual void UpdateSetting(std::map<std::string, std::string> settings) = 0;
  virtual void UpdateRtmpUrl(const std::string& url) = 0;
  virtual bool IsEchoStarted() = 0;
  virtual void StartEchoTest(EchoCheckType type) = 0;
  virtual void StopEchoTest(EchoCheckType type) = 0;
  virtual ~IMediaService() = default;
};

class IOrvaService {
 public:
  virtual int Initialize(Settings* settings, OrvaServiceListener* listener) = 0;
  virtual void Terminate() = 0;
  virtual void GetProperty(const std::string& key, const std::string& value) = 0;
  virtual ~IOrvaService() = default;
};

// A frame processor that applies crop tasks to the frames it is given.
class OrvaVideoProccessor : public VideoFrameProcessor {
 public:
  void OnVideoFrame(VideoFrame* frame) override = 0;
  virtual int AddCropTask(int taskId, OrvaFrameRect source, OrvaFrameRect target) = 0;
  virtual int RemoveCropTask(int taskId) = 0;
  virtual int ModifyCropTask(int taskId, OrvaFrameRect source, OrvaFrameRect target) = 0;
};

}  // namespace Orva::Rtc
