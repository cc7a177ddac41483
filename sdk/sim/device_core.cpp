#include "device_core.h"

#include "status.h"

namespace orva::loopback {

namespace {

template <class List, class Item>
List toList(const std::vector<Item>& items) {
  List list;
  for (const auto& item : items) list.Add(item);
  return list;
}

template <class Device>
Device defaultOf(const std::vector<Device>& devices) {
  for (const auto& d : devices) {
    if (d.isDefault) return d;
  }
  return devices.empty() ? Device{} : devices.front();
}

}  // namespace

DeviceCore::DeviceCore(Events& events) : events_(events), state_(loopbackDevices()) {}

rtc::SpeakerList DeviceCore::speakers() {
  return with([](auto& s) { return toList<rtc::SpeakerList>(s.speakers); });
}
rtc::MicrophoneList DeviceCore::microphones() {
  return with([](auto& s) { return toList<rtc::MicrophoneList>(s.microphones); });
}
rtc::CameraList DeviceCore::cameras() {
  return with([](auto& s) { return toList<rtc::CameraList>(s.cameras); });
}
rtc::WindowList DeviceCore::windows() {
  return with([](auto& s) { return toList<rtc::WindowList>(s.windows); });
}
rtc::ScreenList DeviceCore::screens() {
  return with([](auto& s) { return toList<rtc::ScreenList>(s.screens); });
}
std::vector<rtc::Screen> DeviceCore::screenVector() {
  return with([](auto& s) { return s.screens; });
}
std::vector<rtc::Window> DeviceCore::windowVector() {
  return with([](auto& s) { return s.windows; });
}

int DeviceCore::setMicrophone(const std::string& guid) {
  return setMicrophone(with([&](auto& s) { return indexOfGuid(s.microphones, guid); }));
}

int DeviceCore::setMicrophone(int index) {
  std::lock_guard lock(mutex_);
  if (index < 0 || index >= static_cast<int>(state_.microphones.size())) return kNotFound;
  state_.micIndex = index;
  return kOk;
}

int DeviceCore::setSpeaker(const std::string& guid) {
  return setSpeaker(with([&](auto& s) { return indexOfGuid(s.speakers, guid); }));
}

int DeviceCore::setSpeaker(int index) {
  std::lock_guard lock(mutex_);
  if (index < 0 || index >= static_cast<int>(state_.speakers.size())) return kNotFound;
  state_.speakerIndex = index;
  return kOk;
}

rtc::Microphone DeviceCore::currentMicrophone() {
  return with([](auto& s) { return s.microphones[s.micIndex]; });
}
rtc::Speaker DeviceCore::currentSpeaker() {
  return with([](auto& s) { return s.speakers[s.speakerIndex]; });
}
rtc::Microphone DeviceCore::systemMicrophone() {
  return with([](auto& s) { return defaultOf(s.microphones); });
}
rtc::Speaker DeviceCore::systemSpeaker() {
  return with([](auto& s) { return defaultOf(s.speakers); });
}

int DeviceCore::setMicrophoneVolume(int volume) {
  if (!validVolume(volume)) return kInvalidArgument;
  const bool muted = with([&](auto& s) {
    s.micVolume = volume;
    return s.micMute;
  });
  events_.raise<rtc::IMediaDeviceCallback>([=](auto* l) { l->onAudioDeviceCaptureVolumeChanged(volume, muted); });
  return kOk;
}

int DeviceCore::setSpeakerVolume(int volume) {
  if (!validVolume(volume)) return kInvalidArgument;
  const bool muted = with([&](auto& s) {
    s.speakerVolume = volume;
    return s.speakerMute;
  });
  events_.raise<rtc::IMediaDeviceCallback>([=](auto* l) { l->onAudioDevicePlayoutVolumeChanged(volume, muted); });
  return kOk;
}

int DeviceCore::setLevel(int DeviceState::*field, int volume) {
  if (!validVolume(volume)) return kInvalidArgument;
  with([&](auto& s) { s.*field = volume; });
  return kOk;
}

int DeviceCore::muteMicrophone(bool mute) {
  const int volume = with([&](auto& s) {
    s.micMute = mute;
    return s.micVolume;
  });
  events_.raise<rtc::IMediaDeviceCallback>([=](auto* l) { l->onAudioDeviceCaptureVolumeChanged(volume, mute); });
  return kOk;
}

int DeviceCore::muteSpeaker(bool mute) {
  const int volume = with([&](auto& s) {
    s.speakerMute = mute;
    return s.speakerVolume;
  });
  events_.raise<rtc::IMediaDeviceCallback>([=](auto* l) { l->onAudioDevicePlayoutVolumeChanged(volume, mute); });
  return kOk;
}

int DeviceCore::audioLevel() {
  return with([](auto& s) { return s.micMute ? 0 : s.micVolume * 3 / 5; });
}

std::pair<int, int> DeviceCore::captureSize(const DeviceState& s, const std::string& guid) {
  auto params = s.captureParams.find(guid);
  if (params != s.captureParams.end() && params->second.width > 0 && params->second.height > 0) {
    return {params->second.width, params->second.height};
  }
  const int index = indexOfGuid(s.cameras, guid);
  auto resolutions = s.cameras[index < 0 ? 0 : index].cameraResolutions;  // Get is non-const
  const auto* first = resolutions.Get(0);
  return first != nullptr ? std::pair{first->width, first->height} : std::pair{1280, 720};
}

void DeviceCore::announceCameraStarted(const std::string& guid, int width, int height) {
  events_.raise<rtc::IMediaDeviceCallback>([=](auto* l) {
    l->onCameraSourceStarted(guid, rtc::kLocalMediaTranscodingError_Success, "");
    l->onSourceSized(guid, rtc::kLocalMediaTranscodingSourceType_MediaSourceCamera, width, height);
  });
}

int DeviceCore::openCamera(const std::string& guid) {
  return openCamera(with([&](auto& s) { return indexOfGuid(s.cameras, guid); }));
}

int DeviceCore::openCamera(int index) {
  std::string guid;
  std::pair<int, int> size;
  {
    std::lock_guard lock(mutex_);
    if (index < 0 || index >= static_cast<int>(state_.cameras.size())) return kNotFound;
    guid = state_.cameras[index].guid;
    state_.cameraIndex = index;
    if (!state_.openCameras.insert(guid).second) return kOk;  // already open
    size = captureSize(state_, guid);
  }
  announceCameraStarted(guid, size.first, size.second);
  return kOk;
}

void DeviceCore::closeCamera(const std::string& guid) {
  if (with([&](auto& s) { return s.openCameras.erase(guid); }) == 0) return;
  events_.raise<rtc::IMediaDeviceCallback>([=](auto* l) { l->onCameraSourceStopped(guid, ""); });
}

void DeviceCore::closeCurrentCamera() { closeCamera(currentCamera().guid); }

rtc::Camera DeviceCore::currentCamera() {
  return with([](auto& s) { return s.cameras[s.cameraIndex]; });
}

void DeviceCore::startCameraSource(const std::string& guid) {
  if (openCamera(guid) == kNotFound) {
    events_.raise<rtc::IMediaDeviceCallback>([=](auto* l) { l->onCameraSourceError(guid, rtc::DEVICE_NOT_FOUND); });
  }
}

void DeviceCore::stopCameraSource(const std::string& guid) { closeCamera(guid); }

void DeviceCore::setCaptureParams(const std::string& guid, const rtc::CameraCaptureParams& params) {
  with([&](auto& s) { s.captureParams[guid] = params; });
}

void DeviceCore::startCameraRecord(const std::string& guid) {
  with([&](auto& s) { s.recordings.insert(guid); });
  events_.raise<rtc::IMediaDeviceCallback>([=](auto* l) { l->onCameraSourceRecordStarted(guid); });
}

void DeviceCore::stopCameraRecord(const std::string& guid) {
  if (with([&](auto& s) { return s.recordings.erase(guid); }) == 0) return;
  events_.raise<rtc::IMediaDeviceCallback>([=](auto* l) { l->onCameraSourceRecordStopped(guid); });
}

void DeviceCore::announceCapture(uint64_t id, const rtc::Rect& rect) {
  const std::string source = std::to_string(id);
  events_.raise<rtc::IMediaDeviceCallback>([=](auto* l) {
    l->onScreenSourceStarted(source, rtc::kLocalMediaTranscodingError_Success, "");
    l->onSourceSized(source, rtc::kLocalMediaTranscodingSourceType_MediaSourceScreen, rect.width, rect.height);
  });
}

int DeviceCore::startCaptureScreen(uint64_t id) {
  rtc::Rect rect;
  bool found = false;
  bool fresh = false;
  with([&](auto& s) {
    for (const auto& screen : s.screens) {
      if (screen.id != id) continue;
      found = true;
      rect = screen.rect;
    }
    if (found) fresh = s.capturedScreens.insert(id).second;
  });
  if (!found) {
    const std::string source = std::to_string(id);
    events_.raise<rtc::IMediaDeviceCallback>(
        [=](auto* l) { l->onScreenSourceError(source, rtc::SCREEN_CAPTURE_MONITOR_INVALID); });
    return kNotFound;
  }
  if (fresh) announceCapture(id, rect);
  return kOk;
}

int DeviceCore::startCaptureWindow(uint64_t id) {
  rtc::Rect rect;
  bool found = false;
  bool fresh = false;
  with([&](auto& s) {
    for (const auto& window : s.windows) {
      if (window.id != id) continue;
      found = true;
      rect = window.rect;
    }
    if (found) fresh = s.capturedWindows.insert(id).second;
  });
  if (!found) {
    const std::string source = std::to_string(id);
    events_.raise<rtc::IMediaDeviceCallback>(
        [=](auto* l) { l->onScreenSourceError(source, rtc::SCREEN_CAPTURE_WINDOW_INVALID); });
    return kNotFound;
  }
  if (fresh) announceCapture(id, rect);
  return kOk;
}

void DeviceCore::stopCaptureScreen(uint64_t id) {
  if (with([&](auto& s) { return s.capturedScreens.erase(id); }) == 0) return;
  const std::string source = std::to_string(id);
  events_.raise<rtc::IMediaDeviceCallback>([=](auto* l) { l->onScreenSourceStopped(source, 0); });
}

void DeviceCore::stopCaptureWindow(uint64_t id) {
  if (with([&](auto& s) { return s.capturedWindows.erase(id); }) == 0) return;
  const std::string source = std::to_string(id);
  events_.raise<rtc::IMediaDeviceCallback>([=](auto* l) { l->onScreenSourceStopped(source, 0); });
}

int DeviceCore::startSpeakerTest(const char* audioFile, rtc::AsyncResultHandler* handler) {
  const int result = audioFile != nullptr && *audioFile != '\0' ? kOk : kInvalidArgument;
  if (result == kOk) with([](auto& s) { s.speakerTest = true; });
  if (handler != nullptr) events_.later({}, [=] { handler->onAsyncResult(result); });
  return result;
}

void DeviceCore::openCameraAsync(int index, rtc::AsyncResultHandler* handler) {
  const int result = openCamera(index);
  if (handler != nullptr) events_.later({}, [=] { handler->onAsyncResult(result); });
}

void DeviceCore::reset() {
  std::lock_guard lock(mutex_);
  state_ = loopbackDevices();
}

void DeviceCore::closeAll() {
  std::vector<std::string> cameras;
  std::vector<uint64_t> screens;
  std::vector<uint64_t> windows;
  with([&](auto& s) {
    cameras.assign(s.openCameras.begin(), s.openCameras.end());
    screens.assign(s.capturedScreens.begin(), s.capturedScreens.end());
    windows.assign(s.capturedWindows.begin(), s.capturedWindows.end());
    s.speakerTest = s.micTest = false;
    s.screenAudio = false;
    s.previews.clear();
  });
  for (const auto& guid : cameras) closeCamera(guid);
  for (auto id : screens) stopCaptureScreen(id);
  for (auto id : windows) stopCaptureWindow(id);
}

void DeviceCore::forgetProcessor(rtc::VideoFrameProcessor* processor) {
  if (processor == nullptr) return;
  with([&](auto& s) {
    if (s.windowProcessor == processor) s.windowProcessor = nullptr;
    if (s.screenProcessor == processor) s.screenProcessor = nullptr;
  });
}

}  // namespace orva::loopback
