// Device logic shared by MediaDevice and OrvaEngine: selection, levels,
// camera/screen/window capture and the callbacks those raise. One mutex
// guards the state; callbacks are raised through Events, never under it.
#pragma once

#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "device_state.h"
#include "events.h"

namespace orva::loopback {

class DeviceCore {
 public:
  explicit DeviceCore(Events& events);

  // Runs fn(state) under the lock: simple reads and flag writes.
  template <class Fn>
  auto with(Fn fn) {
    std::lock_guard lock(mutex_);
    return fn(state_);
  }

  rtc::SpeakerList speakers();
  rtc::MicrophoneList microphones();
  rtc::CameraList cameras();
  rtc::WindowList windows();
  rtc::ScreenList screens();
  std::vector<rtc::Screen> screenVector();
  std::vector<rtc::Window> windowVector();

  int setMicrophone(const std::string& guid);
  int setMicrophone(int index);
  int setSpeaker(const std::string& guid);
  int setSpeaker(int index);
  rtc::Microphone currentMicrophone();
  rtc::Speaker currentSpeaker();
  rtc::Microphone systemMicrophone();
  rtc::Speaker systemSpeaker();

  // Levels 0..100: kInvalidArgument and no change outside that range.
  int setMicrophoneVolume(int volume);
  int setSpeakerVolume(int volume);
  int setLevel(int DeviceState::*field, int volume);
  int muteMicrophone(bool mute);
  int muteSpeaker(bool mute);
  // The microphone's current input level, 0..100 (0 while muted).
  int audioLevel();

  int openCamera(const std::string& guid);
  int openCamera(int index);
  void closeCamera(const std::string& guid);
  void closeCurrentCamera();
  rtc::Camera currentCamera();
  // Room-level camera sources: started/stopped callbacks, or an error for
  // an unknown camera.
  void startCameraSource(const std::string& guid);
  void stopCameraSource(const std::string& guid);
  void setCaptureParams(const std::string& guid, const rtc::CameraCaptureParams& params);
  void startCameraRecord(const std::string& guid);
  void stopCameraRecord(const std::string& guid);

  int startCaptureScreen(uint64_t id);
  int startCaptureWindow(uint64_t id);
  void stopCaptureScreen(uint64_t id);
  void stopCaptureWindow(uint64_t id);

  int startSpeakerTest(const char* audioFile, rtc::AsyncResultHandler* handler);
  void openCameraAsync(int index, rtc::AsyncResultHandler* handler);
  void closeAll();
  // Back to the machine's devices with nothing selected, set or captured.
  void reset();

  // Drops `processor` wherever a capture path holds it.
  void forgetProcessor(rtc::VideoFrameProcessor* processor);

 private:
  // Announces an opened camera: started, then its frame size.
  void announceCameraStarted(const std::string& guid, int width, int height);
  void announceCapture(uint64_t id, const rtc::Rect& rect);
  static std::pair<int, int> captureSize(const DeviceState& s, const std::string& guid);

  Events& events_;
  std::mutex mutex_;  // guards state_
  DeviceState state_;
};

}  // namespace orva::loopback
