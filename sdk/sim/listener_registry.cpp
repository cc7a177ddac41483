#include "listener_registry.h"

#include <algorithm>
#include <type_traits>

namespace orva::loopback {
namespace {

// Targets the calling thread is inside right now: a listener that calls
// removeEventHandler from its own callback must not wait for itself.
thread_local std::vector<const void*> t_ownCalls;

int ownCallsTo(const void* target) {
  return static_cast<int>(std::count(t_ownCalls.begin(), t_ownCalls.end(), target));
}

template <class Face>
void* asFace(rtc::OrvaEngineListener* listener) {
  if constexpr (std::is_base_of_v<Face, rtc::OrvaEngineListener>) {
    return static_cast<Face*>(listener);
  } else {
    return nullptr;
  }
}

// Which slots hold a face that an OrvaEngineListener implements: all but the
// processor's.
#define ORVA_ENGINE_FACE(field, Type) std::is_base_of_v<rtc::Type, rtc::OrvaEngineListener>,
constexpr std::array<bool, kFaceCount> kEngineFaces = {ORVA_LISTENER_FACES(ORVA_ENGINE_FACE)};
#undef ORVA_ENGINE_FACE

// `listener` seen through each of its faces (base-class pointers differ);
// null in every other slot, and everywhere for a null listener.
std::array<void*, kFaceCount> engineFaces(rtc::OrvaEngineListener* listener) {
#define ORVA_AS_FACE(field, Type) asFace<rtc::Type>(listener),
  return {ORVA_LISTENER_FACES(ORVA_AS_FACE)};
#undef ORVA_AS_FACE
}

}  // namespace

ListenerRegistry::InFlight::InFlight(ListenerRegistry& r, const std::vector<size_t>& slots) : registry(r) {
  targets.reserve(slots.size());
  std::lock_guard lock(registry.mutex_);
  for (size_t slot : slots) {
    void* target = registry.slots_[slot];
    targets.push_back(target);
    if (target == nullptr) continue;
    ++registry.inFlight_[target];
    t_ownCalls.push_back(target);
  }
}

ListenerRegistry::InFlight::~InFlight() {
  std::lock_guard lock(registry.mutex_);
  for (void* target : targets) {
    if (target == nullptr) continue;
    auto it = registry.inFlight_.find(target);
    if (--it->second == 0) registry.inFlight_.erase(it);
    t_ownCalls.erase(std::find(t_ownCalls.begin(), t_ownCalls.end(), target));
  }
  if (registry.waiters_ > 0) registry.idle_.notify_all();
}

void ListenerRegistry::setSlot(size_t slot, void* target) {
  std::lock_guard lock(mutex_);
  slots_[slot] = target;
}

void ListenerRegistry::setAll(rtc::OrvaEngineListener* listener) {
  const auto faces = engineFaces(listener);
  std::lock_guard lock(mutex_);
  for (size_t slot = 0; slot < kFaceCount; ++slot) {
    if (kEngineFaces[slot]) slots_[slot] = faces[slot];
  }
}

void ListenerRegistry::clearAll() {
  std::lock_guard lock(mutex_);
  slots_.fill(nullptr);
}

std::vector<size_t> ListenerRegistry::allSlots() {
  std::vector<size_t> slots(kFaceCount);
  for (size_t i = 0; i < kFaceCount; ++i) slots[i] = i;
  return slots;
}

FaceSet ListenerRegistry::toFaceSet(const std::vector<void*>& targets) {
  FaceSet faces;
  size_t slot = 0;
#define ORVA_FACE_FIELD(field, Type) faces.field = static_cast<rtc::Type*>(targets[slot++]);
  ORVA_LISTENER_FACES(ORVA_FACE_FIELD)
#undef ORVA_FACE_FIELD
  return faces;
}

void ListenerRegistry::forget(rtc::OrvaEngineListener* listener, rtc::VideoFrameProcessor* processor) {
  auto faces = engineFaces(listener);
  faces[slotOf<rtc::VideoFrameProcessor>()] = processor;

  std::unique_lock lock(mutex_);
  std::vector<const void*> forgotten;
  for (size_t i = 0; i < kFaceCount; ++i) {
    if (faces[i] != nullptr) {
      if (slots_[i] == faces[i]) slots_[i] = nullptr;
      forgotten.push_back(faces[i]);
    }
  }
  ++waiters_;
  idle_.wait(lock, [&] {
    return std::all_of(forgotten.begin(), forgotten.end(), [&](const void* target) {
      auto it = inFlight_.find(target);
      return it == inFlight_.end() || it->second <= ownCallsTo(target);
    });
  });
  --waiters_;
}

}  // namespace orva::loopback
