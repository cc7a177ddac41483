#include "engine_log.h"

#include <chrono>
#include <ctime>

namespace orva::loopback {

std::string formatLogLine(const char* level, const std::string& text) {
  const auto now = std::chrono::system_clock::now();
  const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
  const auto millis = std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000;
  std::tm local{};
  localtime_r(&seconds, &local);
  char stamp[32];
  std::strftime(stamp, sizeof stamp, "%Y-%m-%d %H:%M:%S", &local);
  char prefix[64];
  std::snprintf(prefix, sizeof prefix, "%s.%03d [%s] ", stamp, static_cast<int>(millis), level);
  return prefix + text;
}

void EngineLog::open(const std::string& path) {
  std::lock_guard lock(mutex_);
  if (path == path_ && file_ != nullptr) return;
  if (file_ != nullptr) std::fclose(file_);
  file_ = nullptr;
  path_ = path;
  if (!path.empty()) file_ = std::fopen(path.c_str(), "a");
}

void EngineLog::close() { open(std::string()); }

void EngineLog::write(const char* level, const std::string& text) {
  std::lock_guard lock(mutex_);
  if (file_ == nullptr) return;
  const std::string line = formatLogLine(level, text);
  std::fputs(line.c_str(), file_);
  std::fputc('\n', file_);
  std::fflush(file_);  // a crash must not lose the lines before it
}

std::string EngineLog::path() const {
  std::lock_guard lock(mutex_);
  return path_;
}

}  // namespace orva::loopback
