// Test control of the loopback engine. Included only by tests and the
// test-control addon; the product never sees it. Every function is safe on
// any thread that is not an engine thread.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "listener_faces.h"
#include "orva/sdk.h"

namespace orva::loopback::control {

namespace rtc = Orva::Rtc;

// Returns the engine to what a fresh process finds: stopped as by destroy
// (an open session reports Leaved first), the machine's devices with their
// initial selection and levels, no session, group, echo test, audio file,
// transcoding or media setting, the settings of earlier initialisations
// forgotten, the crash-report client not created, and the three journals
// below empty. Live-instance counts stay: they count objects that exist.
ORVA_API void reset();

// The call journal: one `Interface.member(args)` line per call, oldest first.
ORVA_API std::vector<std::string> journal();
ORVA_API void clearJournal();

struct CrashReport {
  int type = 0;
  std::string tag;
  std::string message;
};
ORVA_API std::vector<CrashReport> crashReports();
ORVA_API void clearCrashReports();

// Every sdk_log_info line, formatted, oldest first.
ORVA_API std::vector<std::string> logLines();
ORVA_API void clearLogLines();

// Live instances of each counted class, by class name, in a fixed order.
ORVA_API std::vector<std::pair<std::string, long>> liveInstances();
ORVA_API long liveInstances(const std::string& className);

// What is registered right now, one pointer per listener face plus the
// camera frame processor; null where nothing is.
using Registered = FaceSet;

// Runs fn(registered) on the engine's event thread and waits for it. While
// fn runs, every registered object counts as in a call (removeEventHandler
// waits for it). False, without running fn, when the engine is not running.
ORVA_API bool runOnEngineThread(const std::function<void(const Registered&)>& fn);

// A frame as a test wants it delivered. The engine owns the frame for the
// call: its buffer holds `size` bytes, `data` copied to the start (the rest
// zero). For I420 with enough bytes the plane pointers follow from the
// strides and height, else dataY is the buffer and U/V are null.
struct Frame {
  int width = 0;
  int height = 0;
  int size = 0;  // the frame's size in bytes
  std::vector<uint8_t> data;
  rtc::VideoType type = rtc::kI420;
  int strideY = 0;
  int strideU = 0;
  int strideV = 0;
  uint32_t extra = 0;
  uint64_t handle = 0;  // texture handle (share_handle)
  bool hasData = true;  // false: the frame's data pointer is null
};
// Delivers `frame` to the registered camera frame processor from the event
// thread and waits. False when none is registered or the engine is stopped.
ORVA_API bool deliverFrame(const Frame& frame);

// Starts `threads` raw engine threads that each raise
// OnPlayFilePosChanged(threadIndex, seq, 0) `perThread` times on the
// registered audio-service face; returns at once.
ORVA_API bool raiseConcurrently(int threads, int perThread);
// Waits for every thread raiseConcurrently started.
ORVA_API void joinRaisers();

// The realtime channel, for callbacks that carry one (not journalled).
ORVA_API rtc::MediaChannel* loopbackChannel();

// Whether the engine's threads run.
ORVA_API bool engineRunning();

}  // namespace orva::loopback::control
