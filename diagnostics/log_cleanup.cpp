#include "diagnostics/log_cleanup.h"

#include <algorithm>
#include <ostream>
#include <vector>

#include "platform/platform.h"

namespace orva::diagnostics {
namespace fs = std::filesystem;

namespace {

constexpr const char* kDeleting = "Deleting: ";
constexpr const char* kNoDirectory = "Directory does not exist: ";
constexpr const char* kNoPermission = "No permission to delete: ";

constexpr uint64_t kTicksPerHour = 36'000'000'000;

LogTicks toTicks(std::chrono::system_clock::time_point time) {
  return std::chrono::floor<LogTicks>(time.time_since_epoch());
}

std::string utf8Of(const fs::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

// Asked of the system, not of the C++ library, which on Windows reads whole
// seconds only.
LogTicks lastWriteOf(const fs::directory_entry& entry) {
  return toTicks(platform::lastWriteTime(utf8Of(entry.path())));
}

// Answers true, after saying so, when the directory is not there.
bool reportMissing(const std::string& dir, const Console& console) {
  if (fs::exists(fs::path(dir))) {
    return false;
  }
  console.err << kNoDirectory << dir << std::endl;
  return true;
}

void removeLog(const fs::path& file, const Console& console) {
  console.out << kDeleting << file.string() << std::endl;
  fs::remove(file);
}

struct Candidate {
  fs::path file;
  LogTicks lastWrite;
};

}  // namespace

LogTicks ageCutoff(LogTicks now, uint32_t days) {
  // Unsigned arithmetic gives the two's-complement wrap of the signed
  // original without its undefined behaviour.
  const auto hours = static_cast<int32_t>(days * 24u);
  const uint64_t span = static_cast<uint64_t>(static_cast<int64_t>(hours)) * kTicksPerHour;
  return LogTicks(static_cast<int64_t>(static_cast<uint64_t>(now.count()) - span));
}

bool isDeletable(const fs::directory_entry& entry, std::ostream& err) {
  if (!platform::canOpenForRemoval(utf8Of(entry.path()))) {
    err << kNoPermission << entry.path().string() << std::endl;
    return false;
  }
  return true;
}

void cleanLogsByAge(const std::string& dir, uint32_t days, std::chrono::system_clock::time_point now,
                    const Console& console) {
  const LogTicks cutoff = ageCutoff(toTicks(now), days);
  if (reportMissing(dir, console)) {
    return;
  }
  for (const fs::directory_entry& entry : fs::directory_iterator(fs::path(dir))) {
    if (!entry.is_regular_file() || !isDeletable(entry, console.err)) {
      continue;
    }
    if (lastWriteOf(entry) < cutoff) {
      removeLog(entry.path(), console);
    }
  }
}

void cleanLogsBySize(const std::string& dir, uint64_t thresholdBytes, const Console& console) {
  if (reportMissing(dir, console)) {
    return;
  }
  std::vector<Candidate> candidates;
  uint64_t total = 0;
  for (const fs::directory_entry& entry : fs::directory_iterator(fs::path(dir))) {
    if (!entry.is_regular_file() || !isDeletable(entry, console.err)) {
      continue;
    }
    total += entry.file_size();
    candidates.push_back({entry.path(), lastWriteOf(entry)});
  }
  std::sort(candidates.begin(), candidates.end(),
            [](const Candidate& a, const Candidate& b) { return a.lastWrite < b.lastWrite; });
  for (const Candidate& candidate : candidates) {
    if (total <= thresholdBytes) {
      break;
    }
    // The size is read again: the file may have grown since it was listed.
    const uint64_t size = fs::file_size(candidate.file);
    removeLog(candidate.file, console);
    total -= size;
  }
}

}  // namespace orva::diagnostics
