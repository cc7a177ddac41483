// The backend of platform/ for the system the tests run on, on real files:
// POSIX, or Windows (cross-built and run under Wine). Where the two answer
// differently, both answers stand side by side.
#include "platform/platform.h"

#include <gtest/gtest.h>

#ifdef _WIN32
#include <windows.h>
#endif

#include <cerrno>

#include "diagnostics/testing/system_files.h"
#include "diagnostics/testing/temp_dir.h"

namespace orva::platform {
namespace {

namespace fs = std::filesystem;
using diagnostics::testing::CurrentDirectory;
using diagnostics::testing::TempDir;
using diagnostics::testing::writeFile;

#ifdef _WIN32
constexpr char kSeparator = '\\';
// The shell's directory creation answers with Win32 error numbers.
constexpr int kAlreadyExists = ERROR_ALREADY_EXISTS;
constexpr int kFileInTheWay = ERROR_PATH_NOT_FOUND;
constexpr int kNoPath = ERROR_BAD_PATHNAME;
// The C library's files share reading and writing but not deletion.
constexpr bool kOpenFileRemovable = false;
#else
constexpr char kSeparator = '/';
constexpr int kAlreadyExists = EEXIST;
constexpr int kFileInTheWay = ENOTDIR;
constexpr int kNoPath = ENOENT;
constexpr bool kOpenFileRemovable = true;
#endif

// This program's file as the system names the process's own image, apart
// from the loader's answer for the module that holds some code.
fs::path thisProgram() {
#ifdef _WIN32
  wchar_t path[MAX_PATH] = {};
  ::GetModuleFileNameW(nullptr, path, MAX_PATH);
  return path;
#else
  return "/proc/self/exe";
#endif
}

fs::path fromUtf8(const std::string& utf8) { return std::u8string(utf8.begin(), utf8.end()); }

TEST(Platform, ModuleIsThisTestProgram) {
  const std::string path = moduleFilePath();
  ASSERT_FALSE(path.empty());
  EXPECT_TRUE(fs::equivalent(fromUtf8(path), thisProgram())) << path;
  EXPECT_EQ(pathSeparator(), kSeparator);
  EXPECT_NE(path.rfind(kSeparator), std::string::npos) << path;
}

TEST(Platform, PathsExistAndOpenForRemoval) {
  TempDir dir;
  writeFile(dir / "file", "text");
  writeFile(dir / "open.log", "");
  const diagnostics::testing::UnopenableFile locked(dir / "locked");
  std::FILE* open = std::fopen((dir / "open.log").string().c_str(), "a");
  ASSERT_NE(open, nullptr);
  const CurrentDirectory inDir(dir.path());
  const struct {
    std::string path;
    bool exists;
    bool removable;
  } cases[] = {
      {dir.path().string(), true, false},
      {(dir / "file").string(), true, true},
      // As script writes a path on any system.
      {dir.path().string() + "/file", true, true},
      {"file", true, true},
      {(dir / "missing").string(), false, false},
      {locked.path().string(), true, false},
      {(dir / "open.log").string(), true, kOpenFileRemovable},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(pathExists(c.path), c.exists) << c.path;
    EXPECT_EQ(canOpenForRemoval(c.path), c.removable) << c.path;
  }
  std::fclose(open);
  EXPECT_EQ(diagnostics::testing::readFile(dir / "file"), "text");
}

TEST(Platform, DanglingLinkDoesNotExist) {
  TempDir dir;
  if (!diagnostics::testing::makeSymlink(dir / "missing", dir / "dangling")) {
    GTEST_SKIP() << diagnostics::testing::kNoSymlinks;
  }
  EXPECT_FALSE(pathExists((dir / "dangling").string()));
}

TEST(Platform, CreateDirectoriesMakesMissingParents) {
  TempDir dir;
  writeFile(dir / "file", "");
  const CurrentDirectory inDir(dir.path());
  const struct {
    std::string path;
    int result;
  } cases[] = {
      {(dir / "a" / "b" / "c").string(), 0},
      {(dir / "x" / "y").string() + "/", 0},
      {(dir / "p" / "" / "q").string(), 0},
      // As script writes a path on any system: forward slashes, or relative
      // to the current directory.
      {dir.path().string() + "/s/t", 0},
      {"r/s", 0},
      {(dir / "a" / "b").string(), kAlreadyExists},
      {(dir / "file" / "sub").string(), kFileInTheWay},
      {"", kNoPath},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(createDirectories(c.path), c.result) << c.path;
    EXPECT_EQ(fs::is_directory(c.path), c.result == 0 || c.result == kAlreadyExists) << c.path;
  }
}

TEST(Platform, OsVersionIsTheKernels) {
  const OsVersion version = osVersion();
#ifdef _WIN32
  // The tests' Windows is 10.0.18362 or later. A program without a manifest
  // that asked GetVersionEx would be told 6.2.
  EXPECT_EQ(version.major, 10u);
  EXPECT_EQ(version.minor, 0u);
  EXPECT_GE(version.build, 18362u);
#else
  EXPECT_EQ(version.major + version.minor + version.build, 0u);
#endif
}

TEST(Platform, LastWriteTimeIsTheFileSystemsOwn) {
  using std::chrono::system_clock;
  TempDir dir;
  writeFile(dir / "file", "");
  for (const std::time_t seconds : {std::time_t{0}, std::time_t{1706691930}, std::time_t{-86400}}) {
    const system_clock::time_point moment = system_clock::from_time_t(seconds) + std::chrono::microseconds(123456);
    diagnostics::testing::setLastWriteTime(dir / "file", moment);
    EXPECT_EQ(lastWriteTime((dir / "file").string()), moment) << seconds;
  }
  EXPECT_THROW(lastWriteTime((dir / "missing").string()), fs::filesystem_error);
}

TEST(Platform, LocalTimeFollowsTheTimeZone) {
  const struct {
    const char* zone;
    int hour;
    int day;
  } cases[] = {{"UTC0", 9, 31}, {"EST5", 4, 31}, {"XST-15", 0, 1}};
  for (const auto& c : cases) {
    diagnostics::testing::setTimeZone(c.zone);
    const std::tm local = localTime(1706691930);  // 2024-01-31 09:05:30 UTC
    EXPECT_EQ(local.tm_hour, c.hour) << c.zone;
    EXPECT_EQ(local.tm_mday, c.day) << c.zone;
    EXPECT_EQ(local.tm_min, 5) << c.zone;
  }
}

}  // namespace
}  // namespace orva::platform
