// Clocks and calendars.
#include <ctime>

#include "platform/platform.h"

namespace orva::platform {

std::tm localTime(std::time_t moment) {
  std::tm local{};
  ::localtime_s(&local, &moment);
  return local;
}

}  // namespace orva::platform
