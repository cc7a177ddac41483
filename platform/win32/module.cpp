// Where this module lives on disk, asked of the loader for the module that
// holds this code rather than for the host process.
#include <windows.h>

#include "platform/platform.h"
#include "platform/win32/utf16.h"

namespace orva::platform {
namespace {

const char kAnchor = 0;

// The loader's answer is cut to this many UTF-16 units; a longer path is
// reported cut, as the system leaves it.
constexpr DWORD kPathCapacity = 2048;

}  // namespace

std::string moduleFilePath() {
  HMODULE module = nullptr;
  const DWORD flags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  if (!::GetModuleHandleExW(flags, reinterpret_cast<LPCWSTR>(&kAnchor), &module)) {
    return {};
  }
  wchar_t path[kPathCapacity] = {};
  const DWORD length = ::GetModuleFileNameW(module, path, kPathCapacity);
  return win32::toUtf8(path, static_cast<int>(length));
}

char pathSeparator() { return '\\'; }

void pinThisModule() {
  HMODULE module = nullptr;
  const DWORD flags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN;
  (void)::GetModuleHandleExW(flags, reinterpret_cast<LPCWSTR>(&kAnchor), &module);
}

}  // namespace orva::platform
