// The engine's list classes. Each holds its elements by value behind its
// opaque pointer; copies are deep, and element pointers stay valid until the
// list changes or dies.
#include "orva/lists.h"

#include <cstdint>
#include <cstring>
#include <vector>

#include "live_counts.h"
#include "orva/records.h"

namespace Orva::Rtc {
namespace {

using orva::loopback::countDown;
using orva::loopback::Counted;
using orva::loopback::countUp;

template <class Item>
Item* itemAt(std::vector<Item>& items, int index) {
  return index >= 0 && index < static_cast<int>(items.size()) ? &items[index] : nullptr;
}

template <class Item>
const Item* itemById(const std::vector<Item>& items, int id) {
  // Ids are unsigned 64-bit; the lookup takes an int, so compare in 64 bits.
  const auto wanted = static_cast<uint64_t>(static_cast<int64_t>(id));
  for (const auto& item : items) {
    if (item.id == wanted) return &item;
  }
  return nullptr;
}

}  // namespace

// The members every list shares: construction, deep copy, assignment,
// destruction (each counted) and Size.
// The macro's arguments name types, which parentheses would break.
// NOLINTBEGIN(bugprone-macro-parentheses)
#define ORVA_LIST_COMMON(List, Item)                                                        \
  struct List::Impl {                                                                       \
    std::vector<Item> items;                                                                \
  };                                                                                        \
  List::List() : impl_(new Impl) { countUp(Counted::List); }                                \
  List::List(const List& other) : impl_(new Impl(*other.impl_)) { countUp(Counted::List); } \
  List::~List() {                                                                           \
    delete impl_;                                                                           \
    countDown(Counted::List);                                                               \
  }                                                                                         \
  List& List::operator=(const List& other) {                                                \
    if (this != &other) *impl_ = *other.impl_;                                              \
    return *this;                                                                           \
  }                                                                                         \
  int List::Size() { return static_cast<int>(impl_->items.size()); }

// NOLINTEND(bugprone-macro-parentheses)

ORVA_LIST_COMMON(SpeakerList, Speaker)
const Speaker* SpeakerList::Get(int index) { return itemAt(impl_->items, index); }
void SpeakerList::Add(const Speaker& speaker) { impl_->items.push_back(speaker); }

ORVA_LIST_COMMON(MicrophoneList, Microphone)
const Microphone* MicrophoneList::Get(int index) { return itemAt(impl_->items, index); }
void MicrophoneList::Add(const Microphone& microphone) { impl_->items.push_back(microphone); }

ORVA_LIST_COMMON(CameraResolutionList, CameraResolution)
CameraResolution* CameraResolutionList::Get(int index) { return itemAt(impl_->items, index); }
void CameraResolutionList::Add(const CameraResolution& resolution) { impl_->items.push_back(resolution); }

ORVA_LIST_COMMON(CameraList, Camera)
Camera* CameraList::Get(int index) { return itemAt(impl_->items, index); }
Camera* CameraList::Get(const char* id) {
  if (id == nullptr) return nullptr;
  for (auto& camera : impl_->items) {
    if (camera.guid == id) return &camera;
  }
  return nullptr;
}
void CameraList::Add(const Camera& camera) { impl_->items.push_back(camera); }

ORVA_LIST_COMMON(WindowList, Window)
const Window* WindowList::Get(int index) { return itemAt(impl_->items, index); }
const Window* WindowList::GetById(int id) { return itemById(impl_->items, id); }
void WindowList::Add(const Window& window) { impl_->items.push_back(window); }

ORVA_LIST_COMMON(ScreenList, Screen)
const Screen* ScreenList::Get(int index) { return itemAt(impl_->items, index); }
const Screen* ScreenList::GetById(int id) { return itemById(impl_->items, id); }
void ScreenList::Add(const Screen& screen) { impl_->items.push_back(screen); }

ORVA_LIST_COMMON(ScreenCaptureModeList, int)
int ScreenCaptureModeList::Get(int index) {
  const int* mode = itemAt(impl_->items, index);
  return mode != nullptr ? *mode : -1;
}
void ScreenCaptureModeList::Add(int mode) { impl_->items.push_back(mode); }

ORVA_LIST_COMMON(LocalMediaTranscodingSourceList, LocalMediaTranscodingSource)
const LocalMediaTranscodingSource* LocalMediaTranscodingSourceList::Get(int index) {
  return itemAt(impl_->items, index);
}
void LocalMediaTranscodingSourceList::Add(const LocalMediaTranscodingSource& source) { impl_->items.push_back(source); }

#undef ORVA_LIST_COMMON

}  // namespace Orva::Rtc
