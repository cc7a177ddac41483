#include "facade/capture_modes.h"

#include <limits>

#include "orva/defines.h"

namespace orva::facade {
namespace {

// The first releases on which the engine offers each technique: Windows 10
// version 1903 for WGC, Windows 8 for DXGI desktop duplication.
constexpr platform::OsVersion kWgcVersion{10, 0, 18362};
constexpr platform::OsVersion kDxgiVersion{6, 2, 9200};

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r'; }

}  // namespace

bool isVersionAtLeast(platform::OsVersion running, platform::OsVersion wanted) {
  if (running.major != wanted.major) {
    return running.major > wanted.major;
  }
  if (running.minor != wanted.minor) {
    return running.minor > wanted.minor;
  }
  return running.build >= wanted.build;
}

std::vector<int> screenCaptureModes(platform::OsVersion running) {
  std::vector<int> modes{Orva::Rtc::ScreenCaptureModeDefault};
  if (isVersionAtLeast(running, kWgcVersion)) {
    modes.push_back(Orva::Rtc::ScreenCaptureModeWGC);
  }
  if (isVersionAtLeast(running, kDxgiVersion)) {
    modes.push_back(Orva::Rtc::ScreenCaptureModeDXGI);
  }
  modes.push_back(Orva::Rtc::ScreenCaptureModeGDI);
  return modes;
}

std::vector<int> windowCaptureModes(platform::OsVersion running) {
  std::vector<int> modes{Orva::Rtc::ScreenCaptureModeDefault};
  if (isVersionAtLeast(running, kWgcVersion)) {
    modes.push_back(Orva::Rtc::ScreenCaptureModeWGC);
  }
  // Offered on every version, under the screen list's name for 2.
  modes.push_back(Orva::Rtc::ScreenCaptureModeDXGI);
  return modes;
}

int64_t parseSourceId(const std::string& text) {
  size_t pos = 0;
  while (pos < text.size() && isBlank(text[pos])) {
    ++pos;
  }
  const bool negative = pos < text.size() && text[pos] == '-';
  if (pos < text.size() && (text[pos] == '-' || text[pos] == '+')) {
    ++pos;
  }
  // The magnitude is gathered unsigned, where the most negative value fits,
  // and held at the limit once it would pass it.
  const uint64_t limit = negative ? uint64_t{1} << 63 : static_cast<uint64_t>(std::numeric_limits<int64_t>::max());
  uint64_t magnitude = 0;
  for (; pos < text.size() && text[pos] >= '0' && text[pos] <= '9'; ++pos) {
    const auto digit = static_cast<uint64_t>(text[pos] - '0');
    magnitude = magnitude > (limit - digit) / 10 ? limit : magnitude * 10 + digit;
  }
  return negative ? static_cast<int64_t>(0 - magnitude) : static_cast<int64_t>(magnitude);
}

}  // namespace orva::facade
