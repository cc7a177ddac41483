// Files and directories by path.
#include <fcntl.h>
#include <io.h>
#include <shlobj.h>
#include <shlwapi.h>
#include <windows.h>

#include <filesystem>
#include <system_error>

#include "platform/platform.h"
#include "platform/win32/utf16.h"

namespace orva::platform {
namespace {

// FILETIME counts 100 ns ticks from 1601-01-01, the system clock from
// 1970-01-01.
using FileTicks = std::chrono::duration<int64_t, std::ratio<1, 10'000'000>>;
constexpr FileTicks kFrom1601To1970{116'444'736'000'000'000LL};

// The full path, written with backslashes, of a path that may be relative or
// use '/'; the path itself when the system cannot make one (an empty path).
std::wstring fullPath(const std::wstring& path) {
  const DWORD size = ::GetFullPathNameW(path.c_str(), 0, nullptr, nullptr);
  if (size == 0) {
    return path;
  }
  std::wstring full(size, L'\0');
  const DWORD length = ::GetFullPathNameW(path.c_str(), size, full.data(), nullptr);
  if (length == 0 || length >= size) {
    return path;
  }
  full.resize(length);
  return full;
}

}  // namespace

bool pathExists(const std::string& utf8) { return ::PathFileExistsW(win32::toUtf16(utf8).c_str()) != FALSE; }

int createDirectories(const std::string& utf8) {
  // The shell's call makes only a full path written with backslashes, and
  // fails on what script naturally passes: '/' (error 3) or a relative path
  // (error 161). Both name the same directory as their full path.
  return ::SHCreateDirectoryExW(nullptr, fullPath(win32::toUtf16(utf8)).c_str(), nullptr);
}

bool canOpenForRemoval(const std::string& utf8) {
  // What fopen's "r+" asks, and deletion besides, shared as the C runtime
  // shares its files. A handle open elsewhere without FILE_SHARE_DELETE, such
  // as the engine's own log, refuses this open as it would the removal.
  const HANDLE handle =
      ::CreateFileW(win32::toUtf16(utf8).c_str(), GENERIC_READ | GENERIC_WRITE | DELETE,
                    FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) {
    return false;
  }
  ::CloseHandle(handle);
  return true;
}

std::chrono::system_clock::time_point lastWriteTime(const std::string& utf8) {
  // Asked of the system: MinGW's C++ library reads whole seconds, and misreads
  // times before 1970. Opened for its attributes only, which no sharing
  // refuses; a link is followed.
  const std::wstring path = win32::toUtf16(utf8);
  const HANDLE handle =
      ::CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                    OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  FILETIME written{};
  const bool read = handle != INVALID_HANDLE_VALUE && ::GetFileTime(handle, nullptr, nullptr, &written) != FALSE;
  const DWORD error = ::GetLastError();
  if (handle != INVALID_HANDLE_VALUE) {
    ::CloseHandle(handle);
  }
  if (!read) {
    throw std::filesystem::filesystem_error("last_write_time", std::filesystem::path(path),
                                            std::error_code(static_cast<int>(error), std::system_category()));
  }
  const FileTicks since1601{static_cast<int64_t>((uint64_t{written.dwHighDateTime} << 32) | written.dwLowDateTime)};
  return std::chrono::system_clock::time_point(
      std::chrono::duration_cast<std::chrono::system_clock::duration>(since1601 - kFrom1601To1970));
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
