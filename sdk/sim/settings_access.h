// The engine's private view of a Settings object: its entries in
// first-insertion order. Settings names this struct as its friend.
#pragma once

#include <string>
#include <vector>

#include "orva/lists.h"

namespace Orva::Rtc {

struct SettingsAccess {
  struct Entry {
    std::string key;
    bool isPointer = false;
    std::string text;         // the value when !isPointer
    void* pointer = nullptr;  // the value when isPointer
  };
  // The entries of `settings`; empty for null.
  static const std::vector<Entry>& entries(const Settings* settings);
};

}  // namespace Orva::Rtc
