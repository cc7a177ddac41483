// Settings and StringVector: the engine's key-value configuration and its
// list of strings.
#include <charconv>
#include <string>
#include <vector>

#include "live_counts.h"
#include "orva/lists.h"
#include "settings_access.h"

namespace Orva::Rtc {

using orva::loopback::countDown;
using orva::loopback::Counted;
using orva::loopback::countUp;

struct Settings::Impl {
  std::vector<SettingsAccess::Entry> entries;  // first-insertion order

  SettingsAccess::Entry& slot(const char* key) {
    for (auto& entry : entries) {
      if (entry.key == key) return entry;
    }
    entries.push_back({});
    entries.back().key = key;
    return entries.back();
  }
  const SettingsAccess::Entry* find(const char* key) const {
    if (key == nullptr) return nullptr;
    for (const auto& entry : entries) {
      if (entry.key == key) return &entry;
    }
    return nullptr;
  }
};

const std::vector<SettingsAccess::Entry>& SettingsAccess::entries(const Settings* settings) {
  static const auto* const kNone = new std::vector<Entry>();
  return settings != nullptr ? settings->impl_->entries : *kNone;
}

Settings::Settings() : impl_(new Impl) { countUp(Counted::Settings); }
Settings::~Settings() {
  delete impl_;
  countDown(Counted::Settings);
}

void Settings::add(const char* key, const char* value) {
  if (key == nullptr) return;
  auto& entry = impl_->slot(key);
  entry.isPointer = false;
  entry.text = value != nullptr ? value : "";
  entry.pointer = nullptr;
}

void Settings::add(const char* key, void* value) {
  if (key == nullptr) return;
  auto& entry = impl_->slot(key);
  entry.isPointer = true;
  entry.text.clear();
  entry.pointer = value;
}

std::string Settings::get(const char* key, const char* defaultValue) {
  const auto* entry = impl_->find(key);
  if (entry != nullptr && !entry->isPointer) return entry->text;
  return defaultValue != nullptr ? defaultValue : "";
}

int Settings::get(const char* key, int defaultValue) {
  const auto* entry = impl_->find(key);
  if (entry == nullptr || entry->isPointer || entry->text.empty()) return defaultValue;
  const char* first = entry->text.data();
  const char* last = first + entry->text.size();
  if (*first == '+') ++first;  // from_chars takes '-' but not '+'
  int value = 0;
  auto [end, error] = std::from_chars(first, last, value);
  return error == std::errc() && end == last && first != last ? value : defaultValue;
}

struct StringVector::Impl {
  std::vector<std::string> items;
};

StringVector::StringVector() : impl_(new Impl) { countUp(Counted::StringVector); }

StringVector::StringVector(int capacity) : StringVector() {
  // Capped: a script can pass any number, and a reservation is only a hint.
  constexpr int kMaxReserve = 1 << 16;
  if (capacity > 0) impl_->items.reserve(capacity < kMaxReserve ? capacity : kMaxReserve);
}

StringVector::~StringVector() {
  delete impl_;
  countDown(Counted::StringVector);
}

int StringVector::size() const { return static_cast<int>(impl_->items.size()); }

std::string StringVector::get(int index) const {
  if (index < 0 || index >= size()) return {};
  return impl_->items[index];
}

void StringVector::add(const std::string& value) const { impl_->items.push_back(value); }

}  // namespace Orva::Rtc
