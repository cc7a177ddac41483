// Members of the standard containers that script sees (`StringMap`,
// `ScreenVector`, `WindowVector`) beyond the containers' own, and how a
// container tells whether it still holds an element it handed out. Failures
// are `std::out_of_range` with the exact texts script receives.
#pragma once

#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace orva::binding {

using StringMap = std::map<std::string, std::string>;

inline std::string mapGet(const StringMap& map, const std::string& key) {
  auto found = map.find(key);
  if (found == map.end()) throw std::out_of_range("key not found");
  return found->second;
}

inline void mapSet(StringMap& map, const std::string& key, const std::string& value) { map[key] = value; }

inline void mapDel(StringMap& map, const std::string& key) {
  auto found = map.find(key);
  if (found == map.end()) throw std::out_of_range("key not found");
  map.erase(found);
}

inline bool mapHasKey(const StringMap& map, const std::string& key) { return map.find(key) != map.end(); }

// The index and the size compare as signed 32-bit integers.
template <class T>
bool inRange(const std::vector<T>& vector, int index) {
  return index >= 0 && index < static_cast<int32_t>(vector.size());
}

template <class T>
T& vectorGet(std::vector<T>& vector, int index) {
  if (!inRange(vector, index)) throw std::out_of_range("vector index out of range");
  return vector[static_cast<size_t>(index)];
}

template <class T>
void vectorSet(std::vector<T>& vector, int index, const T& value) {
  if (!inRange(vector, index)) throw std::out_of_range("vector index out of range");
  vector[static_cast<size_t>(index)] = value;
}

/// Whether `element` is still one of the vector's elements: storage that
/// moved or shrank no longer backs a pointer handed out before.
template <class T>
bool vectorHolds(const std::vector<T>& vector, const void* element) {
  // Addresses compare as numbers: the pointer may lie in storage long gone.
  const auto address = reinterpret_cast<uintptr_t>(element);
  const auto first = reinterpret_cast<uintptr_t>(vector.data());
  return address >= first && address < first + vector.size() * sizeof(T) && (address - first) % sizeof(T) == 0;
}

/// Whether `element` is still one of an engine list's elements. Lists are
/// short (devices, sources), and the engine's list keeps its storage to itself.
template <class List>
bool listHolds(List& list, const void* element) {
  for (int i = 0, size = list.Size(); i < size; ++i) {
    if (static_cast<const void*>(list.Get(i)) == element) return true;
  }
  return false;
}

}  // namespace orva::binding
