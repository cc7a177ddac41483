// Files and directories by path.
#include <shlobj.h>
#include <shlwapi.h>
#include <windows.h>

#include "platform/platform.h"
#include "platform/win32/utf16.h"

namespace orva::platform {

bool pathExists(const std::string& utf8) { return ::PathFileExistsW(win32::toUtf16(utf8).c_str()) != FALSE; }

int createDirectories(const std::string& utf8) {
  return ::SHCreateDirectoryExW(nullptr, win32::toUtf16(utf8).c_str(), nullptr);
}

std::FILE* openFile(const std::string& utf8, const char* mode) {
  const std::wstring wideMode(mode, mode + std::char_traits<char>::length(mode));
  return ::_wfopen(win32::toUtf16(utf8).c_str(), wideMode.c_str());
}

}  // namespace orva::platform
