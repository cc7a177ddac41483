#include "device_state.h"

#include <charconv>
#include <cstring>

namespace orva::loopback {
namespace {

rtc::Camera camera(const char* name, const char* guid, int index, bool withVga) {
  rtc::Camera c;
  c.name = name;
  c.guid = guid;
  c.index = index;
  constexpr auto kI420 = rtc::CaptureDataType::CaptureDataTypeI420;
  if (withVga) c.cameraResolutions.Add({640, 480, 30, kI420});
  c.cameraResolutions.Add({1280, 720, 30, kI420});
  c.cameraResolutions.Add({1920, 1080, 30, kI420});
  return c;
}

}  // namespace

DeviceState loopbackDevices() {
  DeviceState s;
  s.speakers = {{"Loopback Speakers", "spk-0", 0, true, true}, {"Loopback Headphones", "spk-1", 1, false, false}};
  s.microphones = {{"Loopback Microphone", "mic-0", 0, true, true}, {"Loopback Headset Mic", "mic-1", 1, false, false}};
  s.cameras.push_back(camera("Loopback Camera", "cam-0", 0, false));
  s.cameras.push_back(camera("Loopback Document Camera", "cam-1", 1, true));
  s.screens = {{1, "Loopback Screen 1", {0, 0, 1920, 1080}}, {2, "Loopback Screen 2", {1920, 0, 2560, 1440}}};
  s.windows = {{65537, "Editor", {100, 100, 1280, 800}},
               {65538, "Browser", {200, 150, 1440, 900}},
               {65539, "Terminal", {300, 200, 800, 600}}};
  return s;
}

uint64_t parseSourceId(const char* text) {
  if (text == nullptr) return 0;
  while (*text == ' ' || *text == '\t') ++text;
  uint64_t id = 0;
  std::from_chars(text, text + std::strlen(text), id);
  return id;
}

}  // namespace orva::loopback
