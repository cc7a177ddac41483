// Clocks and calendars.
#include "platform/platform.h"

namespace orva::platform {

std::tm localTime(std::time_t moment) {
  std::tm local{};
  ::localtime_r(&moment, &local);
  return local;
}

}  // namespace orva::platform
