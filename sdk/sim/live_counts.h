// Live-instance counters of the engine's value classes. Every constructor
// counts up and every destructor counts down, so tests can prove that each
// object handed across the library boundary was freed exactly once.
#pragma once

namespace orva::loopback {

enum class Counted : int {
  SpeakerList,
  MicrophoneList,
  CameraResolutionList,
  CameraList,
  WindowList,
  ScreenList,
  ScreenCaptureModeList,
  LocalMediaTranscodingSourceList,
  StringVector,
  Settings,
  VideoFrame,
  kCount,
};

const char* countedName(Counted what);
void countUp(Counted what);
void countDown(Counted what);
long liveCount(Counted what);

}  // namespace orva::loopback
