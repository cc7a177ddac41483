// Test helper: a fresh directory under the system's temporary folder, removed
// with everything in it when the test ends. Symbolic links inside are
// removed, never followed.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <system_error>

namespace orva::diagnostics::testing {

class TempDir {
 public:
  TempDir() {
    std::random_device random;
    path_ =
        std::filesystem::temp_directory_path() / ("orva-test-" + std::to_string(random()) + std::to_string(random()));
    std::filesystem::create_directory(path_);
  }
  ~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::filesystem::path& path() const { return path_; }
  std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

 private:
  std::filesystem::path path_;
};

inline void writeFile(const std::filesystem::path& path, const std::string& content) {
  std::ofstream(path, std::ios::binary) << content;
}

inline std::string readFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

}  // namespace orva::diagnostics::testing
