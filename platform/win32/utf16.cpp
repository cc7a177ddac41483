#include "platform/win32/utf16.h"

#include <windows.h>

namespace orva::platform::win32 {

std::wstring toUtf16(const std::string& utf8) {
  if (utf8.empty()) {
    return {};
  }
  const int size = static_cast<int>(utf8.size());
  const int length = ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, nullptr, 0);
  std::wstring utf16(static_cast<size_t>(length), L'\0');
  ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, utf16.data(), length);
  return utf16;
}

std::string toUtf8(const wchar_t* utf16, int length) {
  if (length <= 0) {
    return {};
  }
  const int size = ::WideCharToMultiByte(CP_UTF8, 0, utf16, length, nullptr, 0, nullptr, nullptr);
  std::string utf8(static_cast<size_t>(size), '\0');
  ::WideCharToMultiByte(CP_UTF8, 0, utf16, length, utf8.data(), size, nullptr, nullptr);
  return utf8;
}

}  // namespace orva::platform::win32
