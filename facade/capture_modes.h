// Which screen- and window-capture techniques the running Windows offers, and
// the source identifiers that screen sharing passes as decimal text.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/platform.h"

namespace orva::facade {

/// True when `running` is at least `wanted`, compared by major, then minor,
/// then build.
bool isVersionAtLeast(platform::OsVersion running, platform::OsVersion wanted);

/// The ScreenCaptureMode values for whole screens, in the order offered:
/// Default, WGC (from 10.0.18362), DXGI (from 6.2.9200), GDI.
std::vector<int> screenCaptureModes(platform::OsVersion running);

/// The capture modes offered for windows: Default, WGC (from 10.0.18362), and
/// always the value 2, which windows read as DXGI, not GDI.
std::vector<int> windowCaptureModes(platform::OsVersion running);

/// A source identifier parsed as a signed 64-bit decimal: leading blanks are
/// skipped, a sign is optional, reading stops at the first non-digit, and
/// text without a number gives 0. Values beyond 64 bits stop at the nearest
/// limit.
int64_t parseSourceId(const std::string& text);

}  // namespace orva::facade
