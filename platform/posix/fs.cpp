// Files and directories by path.
#include <sys/stat.h>

#include <cerrno>

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

std::FILE* openFile(const std::string& utf8, const char* mode) { return std::fopen(utf8.c_str(), mode); }

}  // namespace orva::platform
