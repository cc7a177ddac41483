// The log directory on real temporary directories: naming, the clean-up by
// age and by size, and the start-up steps that tie them together. The same
// cases run on POSIX and on Windows; where the two systems differ, both
// answers stand side by side.
#include <gtest/gtest.h>

#ifdef _WIN32
#include <windows.h>
#else
#include <sched.h>
#include <sys/mount.h>
#endif

#include <cerrno>
#include <cstdio>
#include <map>
#include <sstream>

#include "diagnostics/log_cleanup.h"
#include "diagnostics/log_setup.h"
#include "diagnostics/testing/system_files.h"
#include "diagnostics/testing/temp_dir.h"
#include "platform/platform.h"

namespace orva::diagnostics {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using testing::TempDir;
using testing::UnopenableFile;

#ifdef _WIN32
// The shell's directory creation answers with a Win32 error number.
constexpr int kFileInTheWay = ERROR_PATH_NOT_FOUND;
// The engine writes its log through the C library, whose files on Windows
// share reading and writing but not deletion.
constexpr bool kOpenLogRemovable = false;
#else
constexpr int kFileInTheWay = ENOTDIR;
constexpr bool kOpenLogRemovable = true;
#endif

// The clean-ups' "now": 2024-01-31 09:05:30.25 UTC. File ages are set from
// it; its quarter second shows a file time read in whole seconds.
const std::chrono::system_clock::time_point kNow =
    std::chrono::system_clock::from_time_t(1706691930) + std::chrono::milliseconds(250);

struct Output {
  std::ostringstream out;
  std::ostringstream err;
  Console console{out, err};
};

fs::path makeFile(const fs::path& path, std::chrono::system_clock::duration age, size_t size = 16) {
  testing::writeFile(path, std::string(size, 'x'));
  testing::setLastWriteTime(path, kNow - age);
  return path;
}

std::string deleting(std::initializer_list<fs::path> files) {
  std::string lines;
  for (const fs::path& file : files) {
    lines += "Deleting: " + file.string() + "\n";
  }
  return lines;
}

// Keeps a file that opens for reading, writing and deleting from being
// removed. On Linux the file is bound over itself in a mount namespace of
// this process's own, so that unlinking it fails (a mount point is busy); the
// binding dies with the process. Wine offers no such way.
class PinnedFile {
 public:
  explicit PinnedFile(const fs::path& path) : path_(path) {
#ifndef _WIN32
    pinned_ = ::unshare(CLONE_NEWNS) == 0 && ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
              ::mount(path.c_str(), path.c_str(), nullptr, MS_BIND, nullptr) == 0;
#endif
  }
  ~PinnedFile() {
#ifndef _WIN32
    if (pinned_) {
      ::umount(path_.c_str());
    }
#endif
  }
  bool pinned() const { return pinned_; }
  static constexpr const char* kCannot = "this process cannot keep a file that opens for deleting from removal";

 private:
  fs::path path_;
  bool pinned_ = false;
};

TEST(LogCleanupArithmetic, CutoffAndThresholdWrapLikeThe32BitOriginal) {
  const LogTicks now{17'066'919'300'000'000};
  const LogTicks hour{36'000'000'000};
  EXPECT_EQ(ageCutoff(now, 0), now);
  EXPECT_EQ(ageCutoff(now, 10), now - 240 * hour);
  EXPECT_EQ(ageCutoff(now, 0xFFFF'FFFFu), now + 24 * hour);                           // a setting of -1
  EXPECT_EQ(ageCutoff(now, 89'478'485u), now - LogTicks{3'522'434'745'161'793'536});  // 64-bit wrap

  const std::pair<int32_t, uint64_t> thresholds[] = {
      {0, 0},
      {100, 104'857'600},
      {2047, 2'146'435'072},
      {2048, 0xFFFF'FFFF'8000'0000},  // negative in 32 bits: nothing is ever above it
      {4096, 0},                      // wraps to zero: everything is above it
      {4097, 1'048'576},
      {-1, 0xFFFF'FFFF'FFF0'0000},
  };
  for (const auto& [mebibytes, bytes] : thresholds) {
    EXPECT_EQ(sizeThresholdBytes(mebibytes), bytes) << mebibytes << " MiB";
  }
}

TEST(LogFileName, AppendsLocalMinuteWithForwardSlash) {
  testing::setTimeZone("UTC0");
  const std::tm morning = platform::localTime(1706691959);    // 2024-01-31 09:05:59: seconds are cut, not rounded
  const std::tm lastMinute = platform::localTime(944438340);  // 1999-12-05 23:59:00
  EXPECT_EQ(logFileName("/var/log/orva", morning), "/var/log/orva/orva_sdk_20240131_0905.log");
  EXPECT_EQ(logFileName("C:\\logs", lastMinute), "C:\\logs/orva_sdk_19991205_2359.log");
  EXPECT_EQ(logFileName("logs/", morning), "logs//orva_sdk_20240131_0905.log");
}

TEST(LogCleanup, ByAgeRemovesOldDeletableRegularFilesOnly) {
  TempDir dir;
  Output output;
  const fs::path old = makeFile(dir / "orva_sdk_20240101_0000.log", 20 * 24h);
  const fs::path oldOther = makeFile(dir / "notes.txt", 11 * 24h);
  const fs::path young = makeFile(dir / "young.log", 9 * 24h);
  const UnopenableFile locked(dir / "locked.log");
  fs::create_directory(dir / "sub");
  const fs::path nested = makeFile(dir / "sub" / "nested.log", 20 * 24h);

  cleanLogsByAge(dir.path().string(), 10, kNow, output.console);

  EXPECT_FALSE(fs::exists(old));
  EXPECT_FALSE(fs::exists(oldOther));
  EXPECT_TRUE(fs::exists(young) && fs::exists(locked.path()) && fs::exists(nested));
  // Directory order is the system's: the two lines may come either way.
  const std::string out = output.out.str();
  EXPECT_TRUE(out == deleting({old, oldOther}) || out == deleting({oldOther, old})) << out;
  EXPECT_EQ(output.err.str(), "No permission to delete: " + locked.path().string() + "\n");
}

TEST(LogCleanup, ByAgeWithZeroDaysKeepsOnlyFilesNotBeforeNow) {
  TempDir dir;
  Output output;
  const fs::path past = makeFile(dir / "past.log", 1ms);
  const fs::path atNow = makeFile(dir / "now.log", 0s);
  const fs::path future = makeFile(dir / "future.log", -1ms);

  cleanLogsByAge(dir.path().string(), 0, kNow, output.console);

  EXPECT_EQ(output.out.str(), deleting({past}));
  EXPECT_TRUE(!fs::exists(past) && fs::exists(atNow) && fs::exists(future));
}

TEST(LogCleanup, MissingDirectoryIsReportedNotThrown) {
  TempDir dir;
  const std::string missing = (dir / "missing").string();
  Output output;
  cleanLogsByAge(missing, 0, kNow, output.console);
  cleanLogsBySize(missing, 0, output.console);
  EXPECT_EQ(output.err.str(), "Directory does not exist: " + missing + "\nDirectory does not exist: " + missing + "\n");
  EXPECT_EQ(output.out.str(), "");
}

TEST(LogCleanup, LinksCountByWhatTheyNameAndOnlyTheLinkIsRemoved) {
  TempDir outside;
  const fs::path target = makeFile(outside / "precious.log", 30 * 24h, 4096);
  const fs::path nested = makeFile(outside / "nested.log", 30 * 24h);
  const auto targetTime = fs::last_write_time(target);
  for (const bool bySize : {false, true}) {
    TempDir dir;
    Output output;
    const fs::path link = dir / "link.log";
    // A link to a directory is no regular file: what it holds is not looked at.
    if (!testing::makeSymlink(target, link) || !testing::makeSymlink(outside.path(), dir / "sublink")) {
      GTEST_SKIP() << testing::kNoSymlinks;
    }
#ifndef _WIN32
    // Nor is a device, whatever its link is called.
    testing::makeSymlink("/dev/null", dir / "device.log");
#endif
    if (bySize) {
      cleanLogsBySize(dir.path().string(), 0, output.console);
    } else {
      cleanLogsByAge(dir.path().string(), 10, kNow, output.console);
    }
    EXPECT_EQ(output.out.str(), deleting({link}));
    EXPECT_FALSE(fs::exists(link));
    EXPECT_EQ(testing::readFile(target), std::string(4096, 'x'));
    EXPECT_EQ(fs::last_write_time(target), targetTime);
    EXPECT_TRUE(fs::exists(dir / "sublink") && fs::exists(nested));
  }
}

// Test that the log the engine holds open stops neither clean-up: where an
// open file cannot be removed it is reported and kept, and the others go.
TEST(LogCleanup, LogHeldOpenByTheEngineIsSkippedOrRemoved) {
  for (const bool bySize : {false, true}) {
    TempDir dir;
    Output output;
    const fs::path old = makeFile(dir / "old.log", 20 * 24h);
    const fs::path open = makeFile(dir / "orva_sdk_20240110_0800.log", 21 * 24h);
    std::FILE* log = std::fopen(open.string().c_str(), "a");
    ASSERT_NE(log, nullptr);

    if (bySize) {
      EXPECT_NO_THROW(cleanLogsBySize(dir.path().string(), 0, output.console));
    } else {
      EXPECT_NO_THROW(cleanLogsByAge(dir.path().string(), 10, kNow, output.console));
    }
    std::fclose(log);

    EXPECT_FALSE(fs::exists(old));
    EXPECT_EQ(fs::exists(open), !kOpenLogRemovable);
    if (kOpenLogRemovable) {
      // Oldest first by size; in directory order by age.
      const std::string out = output.out.str();
      EXPECT_TRUE(out == deleting({open, old}) || (!bySize && out == deleting({old, open}))) << out;
      EXPECT_EQ(output.err.str(), "");
    } else {
      EXPECT_EQ(output.out.str(), deleting({old}));
      EXPECT_EQ(output.err.str(), "No permission to delete: " + open.string() + "\n");
    }
  }
}

TEST(LogCleanup, BySizeDeletesOldestFirstUntilNotAboveThreshold) {
  const std::pair<uint64_t, int> cases[] = {
      // threshold, how many of the four files go (oldest first)
      {1000, 0}, {999, 1}, {700, 2}, {699, 3}, {0, 4}, {sizeThresholdBytes(2048), 0}, {sizeThresholdBytes(4096), 4},
  };
  for (const auto& [threshold, deleted] : cases) {
    TempDir dir;
    Output output;
    // Made newest first, so that neither name nor creation order sorts them.
    // Their sizes add up to 1000 bytes; nothing else in the directory counts.
    const fs::path files[] = {makeFile(dir / "d.log", 1 * 24h, 400), makeFile(dir / "c.log", 2 * 24h, 300),
                              makeFile(dir / "b.log", 3 * 24h, 200), makeFile(dir / "a.log", 4 * 24h, 100)};
    const UnopenableFile locked(dir / "locked.log");
    fs::create_directory(dir / "sub");
    makeFile(dir / "sub" / "big.log", 9 * 24h, 5000);

    cleanLogsBySize(dir.path().string(), threshold, output.console);

    std::string expected;
    for (int i = 0; i < 4; ++i) {
      const fs::path& file = files[3 - i];
      EXPECT_EQ(fs::exists(file), i >= deleted) << file << " at threshold " << threshold;
      expected += i < deleted ? deleting({file}) : "";
    }
    EXPECT_EQ(output.out.str(), expected) << "threshold " << threshold;
    EXPECT_EQ(output.err.str(), "No permission to delete: " + locked.path().string() + "\n");
    EXPECT_TRUE(fs::exists(dir / "sub" / "big.log"));
  }
}

// Integer settings as the engine answers them, with a record of the keys and
// defaults asked for.
struct FakeSettings {
  std::map<std::string, int> values;
  std::vector<std::string> asked;

  IntSetting reader() {
    return [this](const char* key, int defaultValue) {
      asked.push_back(std::string(key) + "=" + std::to_string(defaultValue));
      const auto found = values.find(key);
      return found == values.end() ? defaultValue : found->second;
    };
  }
};

TEST(PrepareLogDirectory, ConfiguresNothingWithoutADirectory) {
  TempDir root;
  testing::writeFile(root / "file", "");
  const std::pair<std::string, std::string> cases[] = {
      {"", ""},
      {(root / "file" / "logs").string(), "SHCreateDirectoryExW faile: " + std::to_string(kFileInTheWay) + "\n"},
  };
  for (const auto& [dir, err] : cases) {
    FakeSettings settings{{{"orva.log.clear.enable", 1}}, {}};
    Output output;
    EXPECT_EQ(prepareLogDirectory(dir, settings.reader(), kNow, output.console), std::nullopt) << dir;
    EXPECT_EQ(output.err.str(), err);
    EXPECT_EQ(output.out.str(), "");
    EXPECT_TRUE(settings.asked.empty());
  }
}

TEST(PrepareLogDirectory, CreatesMissingParentsAndNamesFromLocalTime) {
  testing::setTimeZone("UTC0");
  TempDir root;
  const testing::CurrentDirectory inRoot(root.path());
  // The system's own separators, and as script writes a path on any system:
  // forward slashes, or relative to the current directory.
  const std::string dirs[] = {(root / "a" / "b" / "logs").string(), root.path().string() + "/c/d/logs", "e/f/logs"};
  for (const std::string& dir : dirs) {
    // The second start finds the directory that the first one made.
    for (int start = 0; start < 2; ++start) {
      FakeSettings settings;
      Output output;
      EXPECT_EQ(prepareLogDirectory(dir, settings.reader(), kNow, output.console), dir + "/orva_sdk_20240131_0905.log");
      EXPECT_TRUE(fs::is_directory(dir)) << dir;
      EXPECT_EQ(settings.asked, std::vector<std::string>{"orva.log.clear.enable=0"});
      EXPECT_EQ(output.out.str() + output.err.str(), "") << dir;
    }
  }
}

TEST(PrepareLogDirectory, CleansByAgeThenBySizeOnlyWhenEnabled) {
  const struct {
    std::map<std::string, int> values;
    std::vector<std::string> deleted;  // in output order
  } cases[] = {
      {{}, {}},
      {{{"orva.log.clear.enable", 1}}, {"eleven-days.log"}},
      {{{"orva.log.clear.enable", 1}, {"orva.log.size.threshold", 4096}},
       {"eleven-days.log", "nine-days.log", "one-day.log"}},
      // Any non-zero value enables; nothing is old enough or too big here.
      {{{"orva.log.clear.enable", -1}, {"orva.log.expire.day", 30}, {"orva.log.size.threshold", 2048}}, {}},
  };
  for (const auto& c : cases) {
    TempDir dir;
    FakeSettings settings{c.values, {}};
    Output output;
    makeFile(dir / "eleven-days.log", 11 * 24h);
    makeFile(dir / "nine-days.log", 9 * 24h);
    makeFile(dir / "one-day.log", 24h);

    EXPECT_TRUE(prepareLogDirectory(dir.path().string(), settings.reader(), kNow, output.console).has_value());

    std::string expected;
    for (const std::string& name : c.deleted) {
      expected += deleting({dir / name});
    }
    EXPECT_EQ(output.out.str(), expected);
    EXPECT_EQ(output.err.str(), "");
    std::vector<std::string> asked{"orva.log.clear.enable=0"};
    if (c.values.count("orva.log.clear.enable") != 0) {
      asked.insert(asked.end(), {"orva.log.expire.day=10", "orva.log.size.threshold=100"});
    }
    EXPECT_EQ(settings.asked, asked);
  }
}

// Test that a deletion that fails for want of anything but permission ends
// the clean-up by size where it is and keeps the deletions before it: called
// alone it throws; at start-up it is reported once and the log still named.
TEST(LogCleanup, BySizeFailureKeepsEarlierDeletions) {
  for (const bool atStartUp : {false, true}) {
    SCOPED_TRACE(atStartUp ? "prepareLogDirectory" : "cleanLogsBySize");
    TempDir dir;
    const fs::path old = makeFile(dir / "old.log", 20 * 24h);  // at start-up, gone by age first
    const fs::path a = makeFile(dir / "a.log", 3 * 24h);
    const fs::path pinned = makeFile(dir / "pinned.log", 2 * 24h);
    const fs::path d = makeFile(dir / "d.log", 1 * 24h);
    PinnedFile pin(pinned);
    if (!pin.pinned()) {
      GTEST_SKIP() << PinnedFile::kCannot;
    }
    Output output;
    if (atStartUp) {
      FakeSettings settings{{{"orva.log.clear.enable", 1}, {"orva.log.size.threshold", 0}}, {}};
      EXPECT_TRUE(prepareLogDirectory(dir.path().string(), settings.reader(), kNow, output.console).has_value());
      EXPECT_EQ(output.err.str(), "Delete Orva Log Files failed\n");
    } else {
      EXPECT_THROW(cleanLogsBySize(dir.path().string(), 0, output.console), fs::filesystem_error);
      EXPECT_EQ(output.err.str(), "");
    }
    EXPECT_EQ(output.out.str(), deleting({old, a, pinned}));
    EXPECT_TRUE(!fs::exists(old) && !fs::exists(a) && fs::exists(pinned) && fs::exists(d));
  }
}

}  // namespace
}  // namespace orva::diagnostics
