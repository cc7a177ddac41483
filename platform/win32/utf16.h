// UTF-8 and UTF-16 conversions shared by the Win32 backend files.
#pragma once

#include <string>

namespace orva::platform::win32 {

std::wstring toUtf16(const std::string& utf8);
std::string toUtf8(const wchar_t* utf16, int length);

}  // namespace orva::platform::win32
