// Test helper: the file-system fixtures that each system makes its own way.
// The tests that use them run on POSIX and on Windows alike; only how a file
// is aged, linked or locked differs.
#pragma once

#ifdef _WIN32
#include <windows.h>
#else
#include <time.h>
#endif

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

#include "diagnostics/testing/temp_dir.h"

namespace orva::diagnostics::testing {

/// Why a test that needs a symbolic link is skipped where makeSymlink fails.
inline constexpr const char* kNoSymlinks =
    "this system makes no symbolic links (Wine's CreateSymbolicLinkW answers success and makes none)";

/// Sets the file's last write time to the moment, at the file system's own
/// resolution. MinGW's C++ library sets whole seconds only, so Windows gets
/// the system call.
inline void setLastWriteTime(const std::filesystem::path& path, std::chrono::system_clock::time_point moment) {
#ifdef _WIN32
  // FILETIME counts 100 ns ticks from 1601-01-01.
  using Ticks = std::chrono::duration<int64_t, std::ratio<1, 10'000'000>>;
  constexpr Ticks kFrom1601To1970{116'444'736'000'000'000LL};
  const auto ticks =
      static_cast<uint64_t>((std::chrono::duration_cast<Ticks>(moment.time_since_epoch()) + kFrom1601To1970).count());
  const FILETIME written{static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
  const HANDLE file = ::CreateFileW(path.c_str(), FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  ::SetFileTime(file, nullptr, nullptr, &written);
  ::CloseHandle(file);
#else
  std::filesystem::last_write_time(path, std::filesystem::file_time_type::clock::from_sys(moment));
#endif
}

/// Makes `link` a symbolic link to `target` (a directory link when the target
/// is a directory); false when no link is there afterwards. MinGW's C++
/// library makes none on Windows, so Windows gets the system call, which
/// needs developer mode or the right to make links.
inline bool makeSymlink(const std::filesystem::path& target, const std::filesystem::path& link) {
#ifdef _WIN32
  DWORD flags = SYMBOLIC_LINK_FLAG_ALLOW_UNPRIVILEGED_CREATE;
  if (std::filesystem::is_directory(target)) {
    flags |= SYMBOLIC_LINK_FLAG_DIRECTORY;
  }
  // The link itself is asked for, not what it names, which may be missing.
  return ::CreateSymbolicLinkW(link.c_str(), target.c_str(), flags) != FALSE &&
         ::GetFileAttributesW(link.c_str()) != INVALID_FILE_ATTRIBUTES;
#else
  if (std::filesystem::is_directory(target)) {
    std::filesystem::create_directory_symlink(target, link);
  } else {
    std::filesystem::create_symlink(target, link);
  }
  return true;
#endif
}

/// An entry that the clean-ups see as a regular file but that cannot be
/// opened for reading and writing while this object lives, even by root.
class UnopenableFile {
 public:
  explicit UnopenableFile(const std::filesystem::path& path) : path_(path) {
#ifdef _WIN32
    // A file held open without sharing, as a program that writes its own log
    // may hold it.
    writeFile(path, "held");
    handle_ = ::CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
#else
    // A link to a read-only kernel setting.
    std::filesystem::create_symlink("/proc/sys/kernel/ostype", path);
#endif
  }
  ~UnopenableFile() {
#ifdef _WIN32
    ::CloseHandle(handle_);
#endif
  }
  UnopenableFile(const UnopenableFile&) = delete;
  UnopenableFile& operator=(const UnopenableFile&) = delete;

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
#ifdef _WIN32
  HANDLE handle_ = INVALID_HANDLE_VALUE;
#endif
};

/// Makes the C library's local time follow the POSIX-style zone text
/// ("UTC0", "EST5").
inline void setTimeZone(const char* zone) {
#ifdef _WIN32
  ::_putenv_s("TZ", zone);
  ::_tzset();
#else
  ::setenv("TZ", zone, 1);
  ::tzset();
#endif
}

/// Makes `dir` the process's current directory until this object ends.
class CurrentDirectory {
 public:
  explicit CurrentDirectory(const std::filesystem::path& dir) : previous_(std::filesystem::current_path()) {
    std::filesystem::current_path(dir);
  }
  ~CurrentDirectory() {
    std::error_code ignored;
    std::filesystem::current_path(previous_, ignored);
  }
  CurrentDirectory(const CurrentDirectory&) = delete;
  CurrentDirectory& operator=(const CurrentDirectory&) = delete;

 private:
  std::filesystem::path previous_;
};

}  // namespace orva::diagnostics::testing
