#include "diagnostics/engine_calls.h"

#include <chrono>
#include <iostream>

#include "diagnostics/error_report.h"
#include "diagnostics/log_setup.h"
#include "diagnostics/settings_file.h"
#include "orva/engine.h"
#include "orva/lists.h"
#include "platform/platform.h"

namespace orva::diagnostics {
namespace {

constexpr const char* kLogFileKey = "media.global.log.file";
constexpr const char* kReportTag = "orva";

}  // namespace

void prepareEngineLog(Orva::Rtc::Settings& settings, const std::string& logDir) {
  const IntSetting setting = [&settings](const char* key, int defaultValue) { return settings.get(key, defaultValue); };
  const Console console{std::cout, std::cerr};
  const std::optional<std::string> logFile =
      prepareLogDirectory(logDir, setting, std::chrono::system_clock::now(), console);
  if (logFile) {
    settings.add(kLogFileKey, logFile->c_str());
  }
}

void loadSettingsFile(Orva::Rtc::Settings& settings) {
  loadSettingsFileBeside(
      platform::moduleFilePath(), platform::pathSeparator(),
      [&settings](const std::string& key, const std::string& value) { settings.add(key.c_str(), value.c_str()); });
}

void reportError(Orva::Rtc::SentryReportType type, int category, int code, const std::string& message) {
  if (const std::optional<std::string> text = errorReportText(category, code, message)) {
    Orva::Rtc::OrvaEngine::reportOrvaSentryEvent(type, kReportTag, *text);
  }
}

}  // namespace orva::diagnostics
