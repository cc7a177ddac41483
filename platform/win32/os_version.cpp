// The system version, read from the kernel, which, unlike GetVersionEx, does
// not answer with the version the application manifest asks for.
#include <windows.h>

#include "platform/platform.h"

extern "C" NTSYSAPI LONG NTAPI RtlGetVersion(PRTL_OSVERSIONINFOW info);

namespace orva::platform {
namespace {

OsVersion readOsVersion() {
  RTL_OSVERSIONINFOEXW info{};
  info.dwOSVersionInfoSize = sizeof(info);
  if (::RtlGetVersion(reinterpret_cast<PRTL_OSVERSIONINFOW>(&info)) != 0) {
    return {0, 0, 0};
  }
  return {info.dwMajorVersion, info.dwMinorVersion, info.dwBuildNumber};
}

}  // namespace

OsVersion osVersion() {
  static const OsVersion version = readOsVersion();
  return version;
}

}  // namespace orva::platform
