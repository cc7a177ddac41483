// The engine's static entry points: the two singletons, the crash-report
// client and sdk_log_info.
#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <string>
#include <vector>

#include "core.h"

namespace orva::loopback {
namespace {
// Whether the crash-report client was created and is enabled. The loopback
// files every report in the crash-report journal either way, so tests see
// what would have been sent. Any thread.
std::atomic<bool> g_sentryCreated{false};
std::atomic<bool> g_sentryEnabled{true};
}  // namespace

void resetCrashReportClient() {
  g_sentryCreated = false;
  g_sentryEnabled = true;
}

}  // namespace orva::loopback

namespace Orva::Rtc {

using orva::loopback::core;
using orva::loopback::g_sentryCreated;
using orva::loopback::g_sentryEnabled;
using orva::loopback::journal;
using orva::loopback::noteCall;

OrvaEngine* OrvaEngine::SDK() {
  noteCall("OrvaEngine", __func__);
  return &core().engine;
}

RtcEngine* RtcEngine::SDK() {
  noteCall("RtcEngine", __func__);
  return &core().rtcEngine;
}

void RtcEngine::EnableSocketServer() { noteCall("RtcEngine", __func__); }

void OrvaEngine::destroyOrvaSentry(bool flush) {
  noteCall("OrvaEngine", __func__, flush);
  g_sentryCreated = false;
}

void OrvaEngine::createOrvaSentry(Settings* settings) {
  noteCall("OrvaEngine", __func__, settings);
  g_sentryCreated = true;
}

void OrvaEngine::enableOrvaSentry(bool enable) {
  noteCall("OrvaEngine", __func__, enable);
  g_sentryEnabled = enable;
}

void OrvaEngine::reportOrvaSentryEvent(SentryReportType type, const std::string& tag, const std::string& message) {
  noteCall("OrvaEngine", __func__, type, tag, message);
  journal().addCrashReport({static_cast<int>(type), tag, message});
  core().parts.logInfo("crash report [" + tag + "] " + message +
                       (g_sentryCreated && g_sentryEnabled ? "" : " (client off)"));
}

void OrvaEngine::updateOrvaSentry(Settings* settings) { noteCall("OrvaEngine", __func__, settings); }

}  // namespace Orva::Rtc

extern "C" ORVA_API void sdk_log_info(const char* format, ...) {
  if (format == nullptr) return;
  va_list args;
  va_start(args, format);
  va_list measure;
  va_copy(measure, args);
  const int length = std::vsnprintf(nullptr, 0, format, measure);
  va_end(measure);
  std::string line;
  if (length > 0) {
    std::vector<char> buffer(static_cast<size_t>(length) + 1);
    std::vsnprintf(buffer.data(), buffer.size(), format, args);
    line.assign(buffer.data(), static_cast<size_t>(length));
  }
  va_end(args);
  orva::loopback::journal().addLogLine(line);
  orva::loopback::core().parts.log.write("sdk", line);
}
