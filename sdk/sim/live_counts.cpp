#include "live_counts.h"

#include <atomic>

namespace orva::loopback {
namespace {

constexpr int kKinds = static_cast<int>(Counted::kCount);

// Constant-initialised and trivially destructible: constructors that run
// during static initialisation or after exit still find valid counters.
// Any thread; relaxed order is enough for counts read after a join.
std::atomic<long> g_live[kKinds] = {};

constexpr const char* kNames[kKinds] = {
    "SpeakerList",
    "MicrophoneList",
    "CameraResolutionList",
    "CameraList",
    "WindowList",
    "ScreenList",
    "ScreenCaptureModeList",
    "LocalMediaTranscodingSourceList",
    "StringVector",
    "Settings",
    "VideoFrame",
};

}  // namespace

const char* countedName(Counted what) { return kNames[static_cast<int>(what)]; }
void countUp(Counted what) { g_live[static_cast<int>(what)].fetch_add(1, std::memory_order_relaxed); }
void countDown(Counted what) { g_live[static_cast<int>(what)].fetch_sub(1, std::memory_order_relaxed); }
long liveCount(Counted what) { return g_live[static_cast<int>(what)].load(std::memory_order_relaxed); }

}  // namespace orva::loopback
