// The developer settings file "orva_setting.txt" beside the addon module: one
// "key:value" line per setting, added to the engine's settings in file order.
//
// Lines are bytes: everything before the first ':' is the key, everything
// after it the value up to its first CR or LF. Nothing is trimmed, quoted or
// escaped, a line without ':' is skipped, and a line longer than 1023 bytes is
// read on as if its rest were the next line.
#pragma once

#include <cstdint>
#include <cstdio>
#include <functional>
#include <string>

namespace orva::diagnostics {

/// Receives one setting.
using AddSetting = std::function<void(const std::string& key, const std::string& value)>;

/// The largest settings file that is read, in bytes: far beyond what any set
/// of settings needs, so a larger file is a mistake, not settings.
inline constexpr uint64_t kMaxSettingsFileBytes = uint64_t{1} << 20;

/// Whether a file opened as the settings file is read at all: only a regular
/// file of at most kMaxSettingsFileBytes. A directory, a pipe (whose reads can
/// wait forever) or a device (/dev/zero never ends) is refused like a missing
/// file.
bool shouldReadSettingsFile(bool regular, uint64_t size);

/// Adds the settings of every line of `file`, read to its end (a read error
/// ends it too).
void readSettingsLines(std::FILE* file, const AddSetting& add);

/// Adds the settings of the file "orva_setting.txt" in the directory of the
/// module at `modulePath`, whose directory part ends at its last `separator`.
/// Silent when there is no separator, no file, the file cannot be opened or
/// shouldReadSettingsFile refuses it; it never waits on what it opens.
void loadSettingsFileBeside(const std::string& modulePath, char separator, const AddSetting& add);

}  // namespace orva::diagnostics
