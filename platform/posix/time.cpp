// Clocks and calendars.
#include "platform/platform.h"

namespace orva::platform {

std::chrono::system_clock::time_point toSystemClock(std::filesystem::file_time_type time) {
  return std::chrono::time_point_cast<std::chrono::system_clock::duration>(
      std::filesystem::file_time_type::clock::to_sys(time));
}

std::tm localTime(std::time_t moment) {
  std::tm local{};
  ::localtime_r(&moment, &local);
  return local;
}

}  // namespace orva::platform
