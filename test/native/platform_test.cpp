// The POSIX backend of platform/ on real files.
#include "platform/platform.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>

#include "diagnostics/testing/temp_dir.h"

namespace orva::platform {
namespace {

namespace fs = std::filesystem;
using diagnostics::testing::TempDir;
using diagnostics::testing::writeFile;

TEST(Platform, ModuleIsThisTestProgram) {
  const std::string path = moduleFilePath();
  ASSERT_FALSE(path.empty());
  EXPECT_TRUE(fs::equivalent(path, "/proc/self/exe")) << path;
  EXPECT_EQ(pathSeparator(), '/');
}

TEST(Platform, PathsExistAndOpen) {
  TempDir dir;
  writeFile(dir / "file", "text");
  fs::create_symlink(dir / "missing", dir / "dangling");
  EXPECT_TRUE(pathExists(dir.path().string()));
  EXPECT_TRUE(pathExists((dir / "file").string()));
  EXPECT_FALSE(pathExists((dir / "missing").string()));
  EXPECT_FALSE(pathExists((dir / "dangling").string()));

  std::FILE* file = openFile((dir / "file").string(), "rb");
  ASSERT_NE(file, nullptr);
  char text[8] = {};
  EXPECT_EQ(std::fread(text, 1, sizeof(text), file), 4u);
  EXPECT_STREQ(text, "text");
  std::fclose(file);
  EXPECT_EQ(openFile((dir / "missing").string(), "rb"), nullptr);
}

TEST(Platform, CreateDirectoriesMakesMissingParents) {
  TempDir dir;
  writeFile(dir / "file", "");
  const struct {
    std::string path;
    int result;
  } cases[] = {
      {(dir / "a" / "b" / "c").string(), 0},      {(dir / "x" / "y").string() + "/", 0},
      {(dir / "p" / "" / "q").string(), 0},       {(dir / "a" / "b").string(), EEXIST},
      {(dir / "file" / "sub").string(), ENOTDIR}, {"", ENOENT},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(createDirectories(c.path), c.result) << c.path;
    EXPECT_EQ(fs::is_directory(c.path), c.result != ENOTDIR && c.result != ENOENT) << c.path;
  }
}

TEST(Platform, NothingWindowsSpecificIsPresent) {
  EXPECT_FALSE(isWindow(0));
  EXPECT_FALSE(isWindow(0x10010));
  const OsVersion version = osVersion();
  EXPECT_EQ(version.major + version.minor + version.build, 0u);
  EXPECT_TRUE(graphicsAdapters().empty());
}

TEST(Platform, FileTimesConvertToTheSystemClock) {
  using std::chrono::system_clock;
  TempDir dir;
  writeFile(dir / "file", "");
  for (const std::time_t seconds : {std::time_t{0}, std::time_t{1706691930}, std::time_t{-86400}}) {
    const system_clock::time_point moment = system_clock::from_time_t(seconds) + std::chrono::microseconds(123456);
    fs::last_write_time(dir / "file", fs::file_time_type::clock::from_sys(moment));
    EXPECT_EQ(toSystemClock(fs::last_write_time(dir / "file")), moment) << seconds;
  }
}

TEST(Platform, LocalTimeFollowsTheTimeZone) {
  const struct {
    const char* zone;
    int hour;
    int day;
  } cases[] = {{"UTC0", 9, 31}, {"EST5", 4, 31}, {"XST-15", 0, 1}};
  for (const auto& c : cases) {
    ::setenv("TZ", c.zone, 1);
    ::tzset();
    const std::tm local = localTime(1706691930);  // 2024-01-31 09:05:30 UTC
    EXPECT_EQ(local.tm_hour, c.hour) << c.zone;
    EXPECT_EQ(local.tm_mday, c.day) << c.zone;
    EXPECT_EQ(local.tm_min, 5) << c.zone;
  }
}

}  // namespace
}  // namespace orva::platform
