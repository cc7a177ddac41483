// Members of the standard containers that script sees (`StringMap`,
// `ScreenVector`, `WindowVector`) beyond the containers' own. Failures are
// `std::out_of_range` with the exact texts script receives.
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

}  // namespace orva::binding
