// The settings file, read from real files, and on POSIX from FIFOs and
// devices too.
#include <gtest/gtest.h>

#ifndef _WIN32
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

#include <chrono>
#include <cstdio>
#include <future>
#include <memory>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include "diagnostics/settings_file.h"
#include "diagnostics/testing/system_files.h"
#include "diagnostics/testing/temp_dir.h"
#include "platform/platform.h"

namespace orva::diagnostics {
namespace {

namespace fs = std::filesystem;
using testing::TempDir;
using testing::writeFile;
using Pairs = std::vector<std::pair<std::string, std::string>>;

AddSetting collectInto(Pairs& pairs) {
  return [&pairs](const std::string& key, const std::string& value) { pairs.emplace_back(key, value); };
}

Pairs readLines(const std::string& content) {
  TempDir dir;
  writeFile(dir / "settings", content);
  std::FILE* file = std::fopen((dir / "settings").string().c_str(), "rb");
  Pairs pairs;
  readSettingsLines(file, collectInto(pairs));
  std::fclose(file);
  return pairs;
}

TEST(SettingsFile, LinesBecomeKeyValuePairs) {
  const std::string longValue(1021, 'v');  // "k:" and these fill one 1023-byte piece
  const struct {
    const char* name;
    std::string content;
    Pairs expected;
  } cases[] = {
      {"one line", "environment:dev\n", {{"environment", "dev"}}},
      {"second colon belongs to the value", "a:b:c\n", {{"a", "b:c"}}},
      {"blanks are kept", " key : value\n", {{" key ", " value"}}},
      {"CR LF and LF", "k1:v1\r\nk2:v2\n", {{"k1", "v1"}, {"k2", "v2"}}},
      {"no final line end", "k1:v1\nk2:v2", {{"k1", "v1"}, {"k2", "v2"}}},
      {"value ends at first CR", "k:v\rrest:x\n", {{"k", "v"}}},
      {"empty key and value", ":\n", {{"", ""}}},
      {"empty file", "", {}},
      {"lines without colon", "no colon\n\nanother\n", {}},
      {"in file order, duplicates too", "k:1\nk:2\n", {{"k", "1"}, {"k", "2"}}},
      {"long line is cut into pieces", "k:" + longValue + "tail:x\n", {{"k", longValue}, {"tail", "x"}}},
      {"long line rest without colon", "k:" + longValue + "rest\nn:1\n", {{"k", longValue}, {"n", "1"}}},
      {"NUL ends a piece's text", std::string("k\0:v\nn:1\n", 9), {{"n", "1"}}},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(readLines(c.content), c.expected) << c.name;
  }
}

// Loads the settings file beside `module`, whose directory ends at the
// system's separator, on another thread, so that a load that blocks or never
// ends fails the test instead of hanging it: after a generous wait the answer
// is no answer (nullopt). A reader stuck on a FIFO is then let go by opening
// and closing the FIFO's write end.
std::optional<Pairs> loadBounded(const std::string& module) {
  constexpr auto kGenerous = std::chrono::seconds(10);
  auto done = std::make_shared<std::promise<Pairs>>();
  std::future<Pairs> result = done->get_future();
  std::thread loader([done, module] {
    Pairs pairs;
    loadSettingsFileBeside(module, platform::pathSeparator(), collectInto(pairs));
    done->set_value(std::move(pairs));
  });
  if (result.wait_for(kGenerous) == std::future_status::ready) {
    loader.join();
    return result.get();
  }
#ifndef _WIN32
  const int writer = ::open((fs::path(module).parent_path() / "orva_setting.txt").c_str(), O_WRONLY | O_NONBLOCK);
  if (writer >= 0) ::close(writer);
#endif
  // The loader owns all it touches, so one that never ends can be left behind.
  if (result.wait_for(kGenerous) == std::future_status::ready) {
    loader.join();
  } else {
    loader.detach();
  }
  return std::nullopt;
}

// "first:1", lines without a colon, and "last:2" without a line end: a
// settings file of exactly `bytes` bytes with two settings.
std::string twoSettingsIn(uint64_t bytes) {
  const std::string head = "first:1\n";
  const std::string tail = "last:2";
  return head + std::string(bytes - head.size() - tail.size() - 1, 'x') + "\n" + tail;
}

TEST(SettingsFile, FoundBesideTheModuleAfterItsLastSeparator) {
  TempDir dir;
  fs::create_directory(dir / "addon.d");
  writeFile(dir / "orva_setting.txt", "from:parent\n");
  writeFile(dir / "addon.d" / "orva_setting.txt", "from:beside\n");
  EXPECT_EQ(loadBounded((dir / "addon.d" / "orva.node").string()), (Pairs{{"from", "beside"}}));
  EXPECT_EQ(loadBounded("orva.node"), Pairs{}) << "a module path without a separator";
}

TEST(SettingsFile, OnlyARegularFileWithinTheLimitIsRead) {
  const Pairs both = {{"first", "1"}, {"last", "2"}};
  // Each case places something at the settings file's path, or nothing.
  const struct {
    const char* name;
    std::function<void(const fs::path&)> place;
    Pairs expected;
  } cases[] = {
      {"exactly at the limit", [](const fs::path& p) { writeFile(p, twoSettingsIn(kMaxSettingsFileBytes)); }, both},
      {"one byte over the limit",
       [](const fs::path& p) { writeFile(p, twoSettingsIn(kMaxSettingsFileBytes + 1)); },
       {}},
      {"nothing", [](const fs::path&) {}, {}},
      {"a directory", [](const fs::path& p) { fs::create_directory(p); }, {}},
#ifndef _WIN32
      // Windows has no FIFO or device at a path of the file system.
      {"a FIFO without a writer", [](const fs::path& p) { EXPECT_EQ(::mkfifo(p.c_str(), 0600), 0); }, {}},
      // Neither ever ends; random bytes would also add settings.
      {"a link to /dev/zero", [](const fs::path& p) { fs::create_symlink("/dev/zero", p); }, {}},
      {"a link to /dev/urandom", [](const fs::path& p) { fs::create_symlink("/dev/urandom", p); }, {}},
#endif
  };
  for (const auto& c : cases) {
    TempDir dir;
    c.place(dir / "orva_setting.txt");
    EXPECT_EQ(loadBounded((dir / "orva.node").string()), c.expected) << c.name;
  }
}

TEST(SettingsFile, ALinkIsReadAsTheFileItNames) {
  TempDir dir;
  writeFile(dir / "real.txt", twoSettingsIn(100));
  if (!testing::makeSymlink(dir / "real.txt", dir / "orva_setting.txt")) {
    GTEST_SKIP() << testing::kNoSymlinks;
  }
  EXPECT_EQ(loadBounded((dir / "orva.node").string()), (Pairs{{"first", "1"}, {"last", "2"}}));
}

}  // namespace
}  // namespace orva::diagnostics
