// The diagnostics steps that talk to the engine library. Each is a thin
// function around a pure piece of this folder, so that the pieces can be
// tested without an engine.
#pragma once

#include <string>

#include "orva/defines.h"

namespace Orva::Rtc {
class Settings;
}

namespace orva::diagnostics {

/// The log steps of engine start-up for `logDir` (see prepareLogDirectory),
/// reading the clean-up settings from `settings` and, when a log file was
/// named, adding it as "media.global.log.file". Writes to the process's
/// standard streams.
void prepareEngineLog(Orva::Rtc::Settings& settings, const std::string& logDir);

/// Adds the settings of "orva_setting.txt" beside this module to `settings`;
/// silent when there is no such file.
void loadSettingsFile(Orva::Rtc::Settings& settings);

/// Sends the report for an engine error to the crash-report service under
/// the tag "orva", unless errorReportText says it is not reported.
void reportError(Orva::Rtc::SentryReportType type, int category, int code, const std::string& message);

}  // namespace orva::diagnostics
