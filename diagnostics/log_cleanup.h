// Pruning of the engine's log directory: first by age, then by total size.
//
// Both clean-ups look only at the directory's direct entries that are regular
// files (a symbolic link counts by what it points at, and only the link is
// ever removed); sub-directories and everything below them are left alone.
// They throw std::filesystem::filesystem_error on any failure they do not
// handle themselves; files removed before the failure stay removed.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <iosfwd>
#include <string>

namespace orva::diagnostics {

/// Where the clean-ups write their lines: "Deleting: " lines go to `out`,
/// problems to `err`. The engine uses the process's standard streams.
struct Console {
  std::ostream& out;
  std::ostream& err;
};

/// The clean-ups' clock: 100 ns ticks since 1970-01-01, the resolution of
/// the file times they compare.
using LogTicks = std::chrono::duration<int64_t, std::ratio<1, 10'000'000>>;

/// The moment before which a file is too old: `now` minus `days` times 24
/// hours, where days times 24 is taken in signed 32 bits and the rest wraps in
/// 64 bits, so that any setting gives a defined (if odd) moment.
LogTicks ageCutoff(LogTicks now, uint32_t days);

/// True when the entry can be opened for reading and writing, and on Windows
/// for deleting too; otherwise writes "No permission to delete: <path>" to
/// `err`. A file held open without sharing, such as a log being written, is
/// so skipped, and on Windows also one whose holder does not share deletion,
/// such as the engine's own log.
bool isDeletable(const std::filesystem::directory_entry& entry, std::ostream& err);

/// Removes every deletable regular file of `dir` last written strictly
/// before ageCutoff(now, days).
void cleanLogsByAge(const std::string& dir, uint32_t days, std::chrono::system_clock::time_point now,
                    const Console& console);

/// Removes deletable regular files of `dir`, oldest first, while their total
/// size is above `thresholdBytes`.
void cleanLogsBySize(const std::string& dir, uint64_t thresholdBytes, const Console& console);

}  // namespace orva::diagnostics
