// The loopback machine's devices and everything callers set on them. Plain
// data; DeviceCore guards it and decides what changes mean.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "orva/sdk.h"

namespace orva::loopback {

namespace rtc = Orva::Rtc;

struct DeviceState {
  // What the machine has: two of each audio device and camera, two screens,
  // three windows.
  std::vector<rtc::Speaker> speakers;
  std::vector<rtc::Microphone> microphones;
  std::vector<rtc::Camera> cameras;
  std::vector<rtc::Screen> screens;
  std::vector<rtc::Window> windows;

  // Selection and levels.
  int micIndex = 0;
  int speakerIndex = 0;
  int cameraIndex = 0;
  bool micMute = false;
  bool speakerMute = false;
  int micVolume = 80;
  int speakerVolume = 80;
  int systemMicVolume = 70;
  int systemSpeakerVolume = 60;
  int mixExternalVolume = 100;
  int screenAudioVolume = 100;
  int loopbackVolume = 100;
  int enhanceLevel = 0;
  float micScale = 1;
  float speakerScale = 1;
  bool loudSpeaker = false;

  // Audio processing.
  bool agc = false;
  int agcLevel = 0;
  bool aec = false;
  bool ans = false;
  int ansLevel = 0;
  bool stereo = false;
  bool fixDelay = false;
  int fixDelayMs = 0;

  // Cameras.
  std::set<std::string> openCameras;  // guids
  bool cameraPaused = false;
  rtc::VideoRotation rotation = rtc::kVideoRotation_0;
  std::set<std::string> previews;  // guids ("" for the current camera)
  std::map<std::string, rtc::CameraCaptureParams> captureParams;
  std::map<std::string, rtc::SourceGreenInfo> greenScreens;
  std::set<std::string> recordings;
  bool cameraProcessorEnabled = false;
  bool yuvOutput = false;

  // Screens and windows being captured, by id.
  std::set<uint64_t> capturedScreens;
  std::set<uint64_t> capturedWindows;
  std::map<std::string, rtc::ScreenCaptureProperty> captureProperties;
  bool screenAudio = false;
  std::string screenAudioDevice;

  // System-audio loopback.
  std::string loopbackDevice;  // "" = the default render device
  bool loopbackEnabled = false;
  bool loopbackRunning = false;

  // Tests and tools.
  bool speakerTest = false;
  bool micTest = false;
  bool traceWindow = false;

  // Processors registered for capture paths the loopback does not feed.
  rtc::VideoFrameProcessor* windowProcessor = nullptr;
  rtc::VideoFrameProcessor* screenProcessor = nullptr;
  rtc::AudioFrameProcessor* screenAudioProcessor = nullptr;
  rtc::AudioFrameProcessor* micProcessor = nullptr;
};

// The devices a fresh engine finds.
DeviceState loopbackDevices();

// Volumes and levels are 0..100.
constexpr bool validVolume(int volume) { return volume >= 0 && volume <= 100; }

// Index of the device whose guid is `guid`, or -1.
template <class Device>
int indexOfGuid(const std::vector<Device>& devices, const std::string& guid) {
  for (size_t i = 0; i < devices.size(); ++i) {
    if (devices[i].guid == guid) return static_cast<int>(i);
  }
  return -1;
}

// The capture source id text of a screen or window: its id in decimal.
// Parses like the callers format it; 0 when the text is not a number.
uint64_t parseSourceId(const char* text);

}  // namespace orva::loopback
