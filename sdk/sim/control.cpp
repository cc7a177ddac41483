#include "control.h"

#include <algorithm>
#include <cstring>

#include "core.h"
#include "live_counts.h"

namespace orva::loopback::control {

void reset() {
  core().parts.reset();
  resetCrashReportClient();
  auto& journal = loopback::journal();
  journal.clearCalls();
  journal.clearCrashReports();
  journal.clearLogLines();
}

std::vector<std::string> journal() { return loopback::journal().calls(); }
void clearJournal() { loopback::journal().clearCalls(); }

std::vector<CrashReport> crashReports() {
  std::vector<CrashReport> reports;
  for (auto& entry : loopback::journal().crashReports()) reports.push_back({entry.type, entry.tag, entry.message});
  return reports;
}
void clearCrashReports() { loopback::journal().clearCrashReports(); }

std::vector<std::string> logLines() { return loopback::journal().logLines(); }
void clearLogLines() { loopback::journal().clearLogLines(); }

std::vector<std::pair<std::string, long>> liveInstances() {
  std::vector<std::pair<std::string, long>> counts;
  for (int i = 0; i < static_cast<int>(Counted::kCount); ++i) {
    const auto what = static_cast<Counted>(i);
    counts.emplace_back(countedName(what), liveCount(what));
  }
  return counts;
}

long liveInstances(const std::string& className) {
  for (const auto& [name, count] : liveInstances()) {
    if (name == className) return count;
  }
  return -1;
}

bool runOnEngineThread(const std::function<void(const Registered&)>& fn) {
  auto& parts = core().parts;
  return parts.scheduler.runAndWait([&] { parts.registry.invokeAll(fn); });
}

bool deliverFrame(const Frame& wanted) {
  auto& parts = core().parts;
  bool delivered = false;
  const bool ran = parts.scheduler.runAndWait([&] {
    // The engine's buffer holds the declared size, so a consumer that copies
    // `size` bytes never reads past it; the data fills its start.
    const int declared = std::max(0, wanted.size);
    const int copied = std::min(declared, static_cast<int>(wanted.data.size()));
    rtc::VideoFrame frame(wanted.hasData ? std::max(declared, 1) : 0);
    auto* bytes = static_cast<uint8_t*>(const_cast<void*>(frame.data));
    if (bytes != nullptr && copied > 0) std::memcpy(bytes, wanted.data.data(), static_cast<size_t>(copied));
    frame.size = wanted.hasData ? declared : 0;
    frame.type = wanted.type;
    frame.width = wanted.width;
    frame.height = wanted.height;
    frame.strideY = wanted.strideY;
    frame.strideU = wanted.strideU;
    frame.strideV = wanted.strideV;
    frame.extra = wanted.extra;
    frame.share_handle = wanted.handle;
    if (bytes != nullptr) {
      frame.dataY = bytes;
      const int64_t lumaBytes = int64_t{wanted.strideY} * wanted.height;
      const int64_t chromaBytes = int64_t{wanted.strideU} * ((wanted.height + 1) / 2);
      if (wanted.type == rtc::kI420 && lumaBytes > 0 && lumaBytes + 2 * chromaBytes <= declared) {
        frame.dataU = bytes + lumaBytes;
        frame.dataV = bytes + lumaBytes + chromaBytes;
      }
    }
    delivered = parts.registry.invoke<rtc::VideoFrameProcessor>([&](auto* p) { p->OnVideoFrame(&frame); });
  });
  return ran && delivered;
}

bool raiseConcurrently(int threads, int perThread) { return core().parts.raisers.start(threads, perThread); }
void joinRaisers() { core().parts.raisers.join(); }

rtc::MediaChannel* loopbackChannel() { return &core().realtime; }
bool engineRunning() { return core().parts.running(); }

}  // namespace orva::loopback::control
