// Files and directories by path.
#include <fcntl.h>
#include <io.h>
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

OpenedFile openForReading(const std::string& utf8) {
  // OPEN_EXISTING never creates anything, and CreateFileW does not wait: a
  // busy pipe fails at once. Without FILE_FLAG_BACKUP_SEMANTICS a directory
  // does not open at all.
  const HANDLE handle =
      ::CreateFileW(win32::toUtf16(utf8).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) {
    return {nullptr, false, 0};
  }
  // Asked of the handle, not the path. Pipes, consoles and other devices are
  // not FILE_TYPE_DISK; a volume opened as a device has no file information.
  BY_HANDLE_FILE_INFORMATION info{};
  const bool regular = ::GetFileType(handle) == FILE_TYPE_DISK &&
                       ::GetFileInformationByHandle(handle, &info) != FALSE &&
                       (info.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
  const uint64_t size = regular ? (uint64_t{info.nFileSizeHigh} << 32) | info.nFileSizeLow : 0;
  // From here the C runtime owns the handle: closing the FILE closes it.
  const int fd = ::_open_osfhandle(reinterpret_cast<intptr_t>(handle), _O_RDONLY | _O_BINARY);
  if (fd == -1) {
    ::CloseHandle(handle);
    return {nullptr, false, 0};
  }
  std::FILE* file = ::_fdopen(fd, "rb");
  if (file == nullptr) {
    ::_close(fd);
    return {nullptr, false, 0};
  }
  return {file, regular, size};
}

}  // namespace orva::platform
