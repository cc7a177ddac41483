#include "services.h"

namespace orva::loopback {

int AudioServiceImpl::Initialize(rtc::Settings* settings, rtc::AudioServiceListener* listener) {
  ORVA_JOURNAL(settings, listener);
  parts_.start(settings);
  parts_.registry.set(listener);
  return rtc::Init_Successd;
}

void AudioServiceImpl::StartPlayFile(int fileId, const rtc::AudioFileParam* param) {
  ORVA_JOURNAL(fileId, param);
  parts_.files.start(fileId, param);
}
void AudioServiceImpl::PauseFile(int fileId) {
  ORVA_JOURNAL(fileId);
  parts_.files.pause(fileId);
}
void AudioServiceImpl::ResumeFile(int fileId) {
  ORVA_JOURNAL(fileId);
  parts_.files.resume(fileId);
}
void AudioServiceImpl::StopPlayFile(int fileId) {
  ORVA_JOURNAL(fileId);
  parts_.files.stop(fileId);
}
void AudioServiceImpl::SeekFile(int fileId, int positionMs) {
  ORVA_JOURNAL(fileId, positionMs);
  parts_.files.seek(fileId, positionMs);
}
void AudioServiceImpl::SetFileAllVolume(int volume) { ORVA_JOURNAL(volume); }
void AudioServiceImpl::SetFilePublishVolume(int fileId, int volume) { ORVA_JOURNAL(fileId, volume); }
void AudioServiceImpl::SetFileLocalVolume(int fileId, int volume) { ORVA_JOURNAL(fileId, volume); }
int AudioServiceImpl::GetFilePos(int fileId) {
  ORVA_JOURNAL(fileId);
  return parts_.files.position(fileId);
}
int AudioServiceImpl::GetFileDuration(const char* path) {
  ORVA_JOURNAL(path);
  return parts_.files.duration(path);
}
void AudioServiceImpl::Terminate() {
  ORVA_JOURNAL();
  parts_.files.terminate();
}

}  // namespace orva::loopback
