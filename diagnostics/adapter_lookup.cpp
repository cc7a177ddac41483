#include "diagnostics/adapter_lookup.h"

#include <array>
#include <string_view>
#include <utility>

namespace orva::diagnostics {
namespace {

constexpr std::string_view kLuidMarker = "luid_";
constexpr std::array<std::string_view, 3> kRejectedRenderers = {"SwiftShader", "Direct3D9", "OpenGL"};

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r'; }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

// Reads a number as scanf's "%d" does: blanks skipped, an optional sign, at
// least one digit. A number outside 32 bits keeps its low 32 bits, as the C
// libraries' readers leave it. On failure `value` is not changed.
bool readDecimal(std::string_view text, size_t& at, int32_t& value) {
  size_t pos = at;
  while (pos < text.size() && isBlank(text[pos])) {
    ++pos;
  }
  const bool negative = pos < text.size() && text[pos] == '-';
  if (pos < text.size() && (text[pos] == '-' || text[pos] == '+')) {
    ++pos;
  }
  if (pos == text.size() || !isDigit(text[pos])) {
    return false;
  }
  uint32_t magnitude = 0;
  for (; pos < text.size() && isDigit(text[pos]); ++pos) {
    magnitude = magnitude * 10u + static_cast<uint32_t>(text[pos] - '0');
  }
  value = static_cast<int32_t>(negative ? 0u - magnitude : magnitude);
  at = pos;
  return true;
}

}  // namespace

std::optional<KeyLuid> parseAdapterKey(const std::string& key) {
  const size_t marker = key.find(kLuidMarker);
  if (key.empty() || marker == std::string::npos) {
    return std::nullopt;
  }
  for (std::string_view renderer : kRejectedRenderers) {
    if (key.find(renderer) != std::string::npos) {
      return std::nullopt;
    }
  }
  KeyLuid luid{0, 0};
  size_t at = marker + kLuidMarker.size();
  if (readDecimal(key, at, luid.low) && at < key.size() && key[at] == '_') {
    ++at;
    readDecimal(key, at, luid.high);
  }
  return luid;
}

bool adapterMatches(const platform::GraphicsAdapter& adapter, const std::string& key, KeyLuid luid) {
  return key.find(adapter.description) != std::string::npos && adapter.luidLow == static_cast<uint32_t>(luid.low) &&
         adapter.luidHigh == luid.high;
}

std::optional<platform::GraphicsAdapter> findAdapter(const std::string& key, const AdapterSource& adapters) {
  const std::optional<KeyLuid> luid = parseAdapterKey(key);
  if (!luid) {
    return std::nullopt;
  }
  for (platform::GraphicsAdapter& adapter : adapters()) {
    if (adapterMatches(adapter, key, *luid)) {
      return std::move(adapter);
    }
  }
  return std::nullopt;
}

bool isSupportShareTexture(const std::string& key, const AdapterSource& adapters) {
  return findAdapter(key, adapters).has_value();
}

}  // namespace orva::diagnostics
