// Clocks and calendars.
#include <ctime>

#include "platform/platform.h"

namespace orva::platform {

std::chrono::system_clock::time_point toSystemClock(std::filesystem::file_time_type time) {
#if defined(_MSVC_STL_VERSION)
  // Microsoft's file clock is the FILETIME clock: 100 ns ticks counted from
  // 1601-01-01, where the system clock counts from 1970-01-01.
  using FileTicks = std::chrono::duration<long long, std::ratio<1, 10'000'000>>;
  constexpr FileTicks kFrom1601To1970{116'444'736'000'000'000LL};
  const FileTicks sinceUnixEpoch = std::chrono::duration_cast<FileTicks>(time.time_since_epoch()) - kFrom1601To1970;
  return std::chrono::system_clock::time_point(
      std::chrono::duration_cast<std::chrono::system_clock::duration>(sinceUnixEpoch));
#else
  // MinGW's standard library keeps its own file-clock epoch and converts.
  return std::chrono::time_point_cast<std::chrono::system_clock::duration>(
      std::filesystem::file_time_type::clock::to_sys(time));
#endif
}

std::tm localTime(std::time_t moment) {
  std::tm local{};
  ::localtime_s(&local, &moment);
  return local;
}

}  // namespace orva::platform
