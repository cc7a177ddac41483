// The log-file steps of engine start-up: the directory, the file's name and,
// when the settings ask for it, the clean-up of old logs.
#pragma once

#include <chrono>
#include <cstdint>
#include <ctime>
#include <functional>
#include <optional>
#include <string>

#include "diagnostics/log_cleanup.h"

namespace orva::diagnostics {

/// The engine's log file in `dir`: "/orva_sdk_", the local time as
/// "%Y%m%d_%H%M", then ".log". The slash is added whatever separators `dir`
/// itself uses, so two names made within one minute are the same.
std::string logFileName(const std::string& dir, const std::tm& local);

/// A size threshold in mebibytes as bytes: shifted left by 20 in signed 32
/// bits, then widened with its sign and read unsigned. So 2048 and above
/// turn negative and become huge (nothing is too big), and exactly 4096 wraps
/// to 0 (everything is).
uint64_t sizeThresholdBytes(int32_t mebibytes);

/// Reads an integer setting, answering `defaultValue` when it is not set.
using IntSetting = std::function<int(const char* key, int defaultValue)>;

/// Prepares `logDir` for the engine at `now` and answers the log file name to
/// hand to it, or nothing when there is none: for an empty `logDir` (nothing
/// at all is done then), or when the directory is missing and cannot be made.
/// With "orva.log.clear.enable" set, the directory is cleaned by age
/// ("orva.log.expire.day", default 10) and then by size
/// ("orva.log.size.threshold", default 100); a failing clean-up is reported
/// once and otherwise ignored.
std::optional<std::string> prepareLogDirectory(const std::string& logDir, const IntSetting& setting,
                                               std::chrono::system_clock::time_point now, const Console& console);

}  // namespace orva::diagnostics
