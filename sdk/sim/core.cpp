#include "core.h"

#include "journal.h"

namespace orva::loopback {

CoreParts::CoreParts() = default;

void CoreParts::start(rtc::Settings* settings) {
  std::lock_guard lock(lifecycle_);
  // Settings accumulate: a later initialisation overrides the keys it names.
  base_ = applySettings(base_, settings);
  session.configure(base_);
  files.configure(base_);
  log.open(base_.logFile);
  if (!scheduler.running()) {
    scheduler.start();
    logInfo("engine started");
  }
}

void CoreParts::stop() {
  std::lock_guard lock(lifecycle_);
  stopLocked();
}

void CoreParts::reset() {
  std::lock_guard lock(lifecycle_);
  stopLocked();
  base_ = Config{};
  session.reset();
  files.configure(base_);
  device.reset();
  media.with([](MediaState& m) { m = MediaState{}; });
}

void CoreParts::stopLocked() {
  raisers.stop();
  session.leaveNow();
  transcoder.halt();
  scheduler.stop();
  files.clear();
  registry.clearAll();
  logInfo("engine stopped");
  log.close();
}

void CoreParts::forget(rtc::OrvaEngineListener* listener, rtc::VideoFrameProcessor* processor) {
  registry.forget(listener, processor);
  device.forgetProcessor(processor);
  if (processor == nullptr) return;
  media.with(
      [&](auto& m) { std::erase_if(m.videoProcessors, [&](auto& entry) { return entry.second == processor; }); });
}

Core::Core() { parts.session.setChannel(&realtime); }

Core& core() {
  static Core* const instance = new Core();
  return *instance;
}

}  // namespace orva::loopback
