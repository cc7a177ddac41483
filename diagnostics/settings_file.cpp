#include "diagnostics/settings_file.h"

#include <cstring>
#include <memory>

#include "platform/platform.h"

namespace orva::diagnostics {
namespace {

constexpr const char* kSettingsFileName = "orva_setting.txt";

// One read takes at most this many bytes minus one, plus the terminator.
constexpr int kPieceCapacity = 1024;

}  // namespace

bool shouldReadSettingsFile(bool regular, uint64_t size) { return regular && size <= kMaxSettingsFileBytes; }

void readSettingsLines(std::FILE* file, const AddSetting& add) {
  char piece[kPieceCapacity];
  while (std::fgets(piece, sizeof(piece), file) != nullptr) {
    // The piece is a C string: a NUL byte read from the file ends it.
    char* colon = std::strchr(piece, ':');
    if (colon == nullptr) {
      continue;
    }
    *colon = '\0';
    char* value = colon + 1;
    value[std::strcspn(value, "\r\n")] = '\0';
    add(piece, value);
  }
}

void loadSettingsFileBeside(const std::string& modulePath, char separator, const AddSetting& add) {
  const std::string::size_type end = modulePath.rfind(separator);
  if (end == std::string::npos) {
    return;
  }
  const std::string path = modulePath.substr(0, end + 1) + kSettingsFileName;
  if (!platform::pathExists(path)) {
    return;
  }
  // Opened first, then judged by what was opened: a check of the path before
  // opening it could be answered by another file than the one read.
  const platform::OpenedFile opened = platform::openForReading(path);
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(opened.file, &std::fclose);
  if (file == nullptr || !shouldReadSettingsFile(opened.regular, opened.size)) {
    return;
  }
  readSettingsLines(file.get(), add);
}

}  // namespace orva::diagnostics
