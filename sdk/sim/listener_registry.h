// Who hears the engine: one registered object per listener face plus the
// camera frame processor. Every call out to one of them goes through
// invoke(), which marks the target as in flight; forget() clears
// registrations and then waits until no other thread is inside a call to a
// forgotten target. New calls cannot start on a cleared slot, so the wait
// ends even while other threads keep raising.
#pragma once

#include <array>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <unordered_map>
#include <vector>

#include "listener_faces.h"

namespace orva::loopback {

class ListenerRegistry {
 public:
  template <ListenerFace T>
  void set(T* target) {
    setSlot(slotOf<T>(), target);
  }
  // Registers every face of `listener` (null clears them); the processor
  // slot is left alone.
  void setAll(rtc::OrvaEngineListener* listener);
  void clearAll();

  // Calls fn(target) with the registered target of face T, marked in flight.
  // False, without calling, when nothing is registered.
  template <ListenerFace T, class Fn>
  bool invoke(Fn&& fn) {
    InFlight guard(*this, {slotOf<T>()});
    if (guard.targets[0] == nullptr) return false;
    fn(static_cast<T*>(guard.targets[0]));
    return true;
  }

  // Calls fn(const FaceSet&) with every target marked in flight.
  template <class Fn>
  void invokeAll(Fn&& fn) {
    InFlight guard(*this, allSlots());
    fn(toFaceSet(guard.targets));
  }

  // Clears every slot holding a face of `listener` or `processor` (either may
  // be null) and returns once no other thread is inside a call to them.
  void forget(rtc::OrvaEngineListener* listener, rtc::VideoFrameProcessor* processor);

 private:
  // Marks targets in flight for its lifetime (exception-safe).
  struct InFlight {
    InFlight(ListenerRegistry& registry, const std::vector<size_t>& slots);
    ~InFlight();
    InFlight(const InFlight&) = delete;
    InFlight& operator=(const InFlight&) = delete;
    ListenerRegistry& registry;
    std::vector<void*> targets;  // one per requested slot, null when empty
  };

  void setSlot(size_t slot, void* target);
  static std::vector<size_t> allSlots();
  static FaceSet toFaceSet(const std::vector<void*>& targets);

  std::mutex mutex_;  // guards slots_, inFlight_ and waiters_
  std::condition_variable idle_;
  std::array<void*, kFaceCount> slots_{};          // registered target per face
  std::unordered_map<const void*, int> inFlight_;  // target -> calls running
  int waiters_ = 0;                                // forget() calls waiting
};

}  // namespace orva::loopback
