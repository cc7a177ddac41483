#include "diagnostics/log_setup.h"

#include <ostream>

#include "platform/platform.h"

namespace orva::diagnostics {
namespace {

// The line names the Win32 creation call on every system, and "faile" is
// spelled so on purpose: the line is kept byte for byte as it has always read.
constexpr const char* kCreateFailed = "SHCreateDirectoryExW faile: ";
constexpr const char* kCleanFailed = "Delete Orva Log Files failed";

constexpr const char* kClearEnableKey = "orva.log.clear.enable";
constexpr const char* kExpireDaysKey = "orva.log.expire.day";
constexpr const char* kSizeThresholdKey = "orva.log.size.threshold";
constexpr int kDefaultClearEnable = 0;
constexpr int kDefaultExpireDays = 10;
constexpr int kDefaultSizeThreshold = 100;

// "%Y%m%d_%H%M" needs 13 characters and the terminator for four-digit years;
// the buffer leaves room for one more year digit.
constexpr size_t kTimeTextCapacity = 15;

}  // namespace

std::string logFileName(const std::string& dir, const std::tm& local) {
  char timeText[kTimeTextCapacity] = {};
  if (std::strftime(timeText, sizeof(timeText), "%Y%m%d_%H%M", &local) == 0) {
    timeText[0] = '\0';
  }
  return dir + "/orva_sdk_" + timeText + ".log";
}

uint64_t sizeThresholdBytes(int32_t mebibytes) {
  // The shift is done unsigned: it gives the bits of the 32-bit signed shift
  // without its undefined behaviour.
  const auto bytes = static_cast<int32_t>(static_cast<uint32_t>(mebibytes) << 20);
  return static_cast<uint64_t>(static_cast<int64_t>(bytes));
}

std::optional<std::string> prepareLogDirectory(const std::string& logDir, const IntSetting& setting,
                                               std::chrono::system_clock::time_point now, const Console& console) {
  if (logDir.empty()) {
    return std::nullopt;
  }
  if (!platform::pathExists(logDir)) {
    const int result = platform::createDirectories(logDir);
    if (result != 0) {
      console.err << kCreateFailed << result << std::endl;
      return std::nullopt;
    }
  }
  std::string name = logFileName(logDir, platform::localTime(std::chrono::system_clock::to_time_t(now)));
  if (setting(kClearEnableKey, kDefaultClearEnable) != 0) {
    try {
      cleanLogsByAge(logDir, static_cast<uint32_t>(setting(kExpireDaysKey, kDefaultExpireDays)), now, console);
      cleanLogsBySize(logDir, sizeThresholdBytes(setting(kSizeThresholdKey, kDefaultSizeThreshold)), console);
    } catch (...) {
      // Old logs are a nuisance, not a reason to keep the engine from starting.
      console.err << kCleanFailed << std::endl;
    }
  }
  return name;
}

}  // namespace orva::diagnostics
