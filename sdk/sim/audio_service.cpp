#include "services.h"

namespace orva::loopback {

namespace {
constexpr const char* kName = "AudioService";
}

int AudioServiceImpl::Initialize(rtc::Settings* settings, rtc::AudioServiceListener* listener) {
  noteCall(kName, "Initialize", settings, listener);
  parts_.start(settings);
  parts_.registry.set(listener);
  return rtc::Init_Successd;
}

void AudioServiceImpl::StartPlayFile(int fileId, const rtc::AudioFileParam* param) {
  noteCall(kName, "StartPlayFile", fileId, param), parts_.files.start(fileId, param);
}
void AudioServiceImpl::PauseFile(int fileId) { noteCall(kName, "PauseFile", fileId), parts_.files.pause(fileId); }
void AudioServiceImpl::ResumeFile(int fileId) { noteCall(kName, "ResumeFile", fileId), parts_.files.resume(fileId); }
void AudioServiceImpl::StopPlayFile(int fileId) { noteCall(kName, "StopPlayFile", fileId), parts_.files.stop(fileId); }
void AudioServiceImpl::SeekFile(int fileId, int positionMs) {
  noteCall(kName, "SeekFile", fileId, positionMs), parts_.files.seek(fileId, positionMs);
}
void AudioServiceImpl::SetFileAllVolume(int volume) { noteCall(kName, "SetFileAllVolume", volume); }
void AudioServiceImpl::SetFilePublishVolume(int fileId, int volume) {
  noteCall(kName, "SetFilePublishVolume", fileId, volume);
}
void AudioServiceImpl::SetFileLocalVolume(int fileId, int volume) {
  noteCall(kName, "SetFileLocalVolume", fileId, volume);
}
int AudioServiceImpl::GetFilePos(int fileId) {
  return noteCall(kName, "GetFilePos", fileId), parts_.files.position(fileId);
}
int AudioServiceImpl::GetFileDuration(const char* path) {
  return noteCall(kName, "GetFileDuration", path), parts_.files.duration(path);
}
void AudioServiceImpl::Terminate() { noteCall(kName, "Terminate"), parts_.files.terminate(); }

}  // namespace orva::loopback
