// Files and directories by path.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "platform/platform.h"

namespace orva::platform {

bool pathExists(const std::string& utf8) {
  struct stat info {};
  return ::stat(utf8.c_str(), &info) == 0;
}

int createDirectories(const std::string& utf8) {
  if (utf8.empty()) {
    return ENOENT;
  }
  if (pathExists(utf8)) {
    return EEXIST;
  }
  // Make each directory on the way, from the first component on. One that is
  // already there is passed; a file in the way makes the next step fail with
  // ENOTDIR.
  std::string::size_type end = 0;
  while (end != std::string::npos) {
    end = utf8.find('/', end + 1);
    const std::string prefix = utf8.substr(0, end);
    if (prefix.back() == '/') {
      continue;
    }
    if (::mkdir(prefix.c_str(), 0777) != 0 && errno != EEXIST) {
      return errno;
    }
  }
  return 0;
}

bool canOpenForRemoval(const std::string& utf8) {
  // An open file never keeps its name from being unlinked here.
  std::FILE* file = std::fopen(utf8.c_str(), "r+");
  if (file == nullptr) {
    return false;
  }
  std::fclose(file);
  return true;
}

std::chrono::system_clock::time_point lastWriteTime(const std::string& utf8) {
  // The C++ library reads the file system's own resolution here, and throws
  // its error for "last_write_time" itself.
  return std::chrono::time_point_cast<std::chrono::system_clock::duration>(
      std::filesystem::file_time_type::clock::to_sys(std::filesystem::last_write_time(utf8)));
}

OpenedFile openForReading(const std::string& utf8) {
  // Without O_NONBLOCK, opening a FIFO for reading waits for a writer, maybe
  // forever. A regular file reads the same either way. O_NOCTTY: a terminal
  // named here must not become the process's controlling terminal.
  const int fd = ::open(utf8.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  if (fd < 0) {
    return {nullptr, false, 0};
  }
  // Asked of the descriptor, not the path: the path may have been replaced
  // since it was opened.
  struct stat info {};
  std::FILE* file = ::fstat(fd, &info) == 0 ? ::fdopen(fd, "rb") : nullptr;
  if (file == nullptr) {
    ::close(fd);
    return {nullptr, false, 0};
  }
  const bool regular = S_ISREG(info.st_mode);
  return {file, regular, regular ? static_cast<uint64_t>(info.st_size) : 0};
}

}  // namespace orva::platform
