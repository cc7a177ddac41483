// The engine's log file, named by the setting "media.global.log.file" at
// initialisation. The engine's own lines and every sdk_log_info line are
// appended, each with a local timestamp and a level tag.
#pragma once

#include <cstdio>
#include <mutex>
#include <string>

namespace orva::loopback {

class EngineLog {
 public:
  // Switches to the file at `path` (appending); an empty path closes it.
  void open(const std::string& path);
  void close();
  // One line; dropped when no file is open. Any thread.
  void write(const char* level, const std::string& text);

  std::string path() const;

 private:
  mutable std::mutex mutex_;  // guards file_ and path_
  std::FILE* file_ = nullptr;
  std::string path_;
};

// `2024-05-01 13:04:05.123 [info] text` — the shape of every log line.
std::string formatLogLine(const char* level, const std::string& text);

}  // namespace orva::loopback
