// Device state of the loopback engine: what the machine has, selection,
// levels with their range checks, and capture callbacks. OrvaEngine and
// MediaDevice share one state.
#include <gtest/gtest.h>

#include "control.h"
#include "sim_recorder.h"

namespace {

using namespace sim_test;

class DeviceTest : public EngineTest {
 protected:
  rtc::MediaDevice* device = engine->Device();
};

// Test the devices the loopback machine has.
TEST_F(DeviceTest, MachineHasTwoOfEachAndThreeWindows) {
  EXPECT_EQ(device->Speakers().Size(), 2);
  EXPECT_EQ(device->Microphones().Size(), 2);
  EXPECT_EQ(device->Screens().Size(), 2);
  EXPECT_EQ(device->Windows().Size(), 3);
  auto cameras = engine->getCameraDevicesList();
  ASSERT_EQ(cameras.Size(), 2);
  for (int i = 0; i < cameras.Size(); ++i) {
    auto& resolutions = cameras.Get(i)->cameraResolutions;
    ASSERT_GE(resolutions.Size(), 2);
    EXPECT_EQ(resolutions.Get(0)->type, rtc::CaptureDataType::CaptureDataTypeI420);
    EXPECT_EQ(resolutions.Get(0)->maxFps, 30);
  }
  EXPECT_EQ(engine->getScreenList().size(), 2u);
  EXPECT_EQ(engine->getWindowList().at(0).id, 65537u);
}

// Test that every level setter takes 0..100, answers a negative status
// outside it and then leaves the level unchanged.
TEST_F(DeviceTest, LevelsRoundTripAndRejectOutOfRange) {
  struct Level {
    const char* name;
    std::function<int(int)> set;
    std::function<int()> get;
  };
  const std::vector<Level> levels = {
      {"microphone", [&](int v) { return device->SetMicrophoneVolume(v); },
       [&] { return engine->GetMicrophoneVolume(); }},
      {"speaker", [&](int v) { return engine->SetSpeakerVolume(v); }, [&] { return device->GetSpeakerVolume(); }},
      {"system speaker", [&](int v) { return device->SetSystemSpeakerVolume(v); },
       [&] { return engine->getSystemSpeakerVolume(); }},
      {"room capture", [&](int v) { return engine->setAudioCaptureVolume(v), 0; },
       [&] { return engine->getCurrentMicDeviceVolume(); }},
  };
  for (const auto& level : levels) {
    SCOPED_TRACE(level.name);
    for (int v : {0, 100, 37}) {
      EXPECT_EQ(level.set(v), 0);
      EXPECT_EQ(level.get(), v);
    }
    for (int v : {-1, 101, 1 << 30}) {
      if (std::string(level.name) != "room capture")
        EXPECT_LT(level.set(v), 0);
      else
        level.set(v);
      EXPECT_EQ(level.get(), 37);
    }
  }
  EXPECT_LT(device->SetScreenAudioCaptureVolume(150), 0);
  EXPECT_LT(engine->SetMixExternalAudioVolume(-5), 0);
}

// Test device selection by guid, by index and at room level, with unknown
// devices refused and the selection kept.
TEST_F(DeviceTest, SelectionByGuidIndexAndRoomLevel) {
  EXPECT_EQ(device->SetMicrophone(std::string("mic-1")), 0);
  EXPECT_EQ(engine->getCurrentMicDevice().guid, "mic-1");
  EXPECT_LT(device->SetMicrophone(std::string("nope")), 0);
  EXPECT_LT(engine->SetMicrophone(5), 0);
  EXPECT_EQ(engine->GetCurrentMicrophone().guid, "mic-1");
  engine->setCurrentMicDevice("mic-0");
  engine->setCurrentMicDevice(nullptr);
  EXPECT_EQ(device->GetCurrentMicrophone().guid, "mic-0");
  EXPECT_EQ(engine->SetSpeaker(1), 0);
  EXPECT_EQ(engine->getCurrentSpeakerDevice().guid, "spk-1");
  engine->setCurrentSpeakerDevice("spk-0");
  EXPECT_EQ(device->GetCurrentSpeaker().guid, "spk-0");
  EXPECT_EQ(engine->getSystemSpeakerDevice().isDefault, true);
  EXPECT_EQ(device->OpenCamera("cam-1"), 0);
  EXPECT_EQ(engine->GetCurrentCamera().guid, "cam-1");
  EXPECT_LT(engine->OpenCamera(9), 0);
}

// Test that flags set through one interface read back through the other.
TEST_F(DeviceTest, FlagsAreSharedBetweenEngineAndDevice) {
  device->MuteMicrophone(true);
  EXPECT_TRUE(engine->getCurrentMicDeviceMute());
  engine->MuteSpeaker(true);
  EXPECT_TRUE(device->GetSpeakerMute());
  EXPECT_EQ(engine->GetCurrentAudioLevel(), 0) << "a muted microphone has no level";
  engine->enableAudioAGC(true, 3);
  EXPECT_TRUE(device->GetAGCStatus());
  device->EnableAudioAEC(true);
  EXPECT_TRUE(engine->getAECStatus());
  engine->EnableAudioANS(true, 2);
  EXPECT_TRUE(engine->getANSStatus());
  engine->EnableAudioANS(false);
  EXPECT_FALSE(device->GetANSStatus());
  device->EnableStereoMicrophone(true);
  EXPECT_TRUE(engine->getStereoMicrophoneStatus());
  ASSERT_TRUE(recorder.waitFor("onAudioDevicePlayoutVolumeChanged(80,1)"));
}

// Test that screens, windows and room-level camera sources start (with their
// size) and stop by id with callbacks, and that unknown ones are refused with
// an error callback.
TEST_F(DeviceTest, CaptureSourcesStartAndStopWithCallbacks) {
  EXPECT_EQ(device->StartCaptureScreen("2"), 0);
  rtc::Window window;
  window.id = 65539;
  EXPECT_EQ(engine->StartCaptureWindow(window, 0), 0);
  EXPECT_LT(device->StartCaptureScreen("77"), 0);
  EXPECT_LT(device->StartCaptureScreen(static_cast<const char*>(nullptr)), 0);
  engine->startCameraSource("cam-0");
  engine->startCameraSource("cam-9");
  engine->StopCaptureScreen("2");
  device->StopCaptureWindow("65539");
  engine->stopCameraSource("cam-0");
  ASSERT_TRUE(recorder.waitFor("onCameraSourceStopped(cam-0)"));
  EXPECT_EQ(recorder.texts(),
            (std::vector<std::string>{
                "onScreenSourceStarted(2,0)", "onSourceSized(2,1,2560,1440)", "onScreenSourceStarted(65539,0)",
                "onSourceSized(65539,1,800,600)", "onScreenSourceError(77,3)", "onScreenSourceError(0,3)",
                "onCameraSourceStarted(cam-0,0)", "onSourceSized(cam-0,0,1280,720)", "onCameraSourceError(cam-9,-2)",
                "onScreenSourceStopped(2,0)", "onScreenSourceStopped(65539,0)", "onCameraSourceStopped(cam-0)"}));
}

}  // namespace
