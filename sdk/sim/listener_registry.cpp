#include "listener_registry.h"

#include <algorithm>

namespace orva::loopback {
namespace {

// Targets the calling thread is inside right now: a listener that calls
// removeEventHandler from its own callback must not wait for itself.
thread_local std::vector<const void*> t_ownCalls;

int ownCallsTo(const void* target) {
  return static_cast<int>(std::count(t_ownCalls.begin(), t_ownCalls.end(), target));
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

void ListenerRegistry::setSlot(Face face, void* target) {
  std::lock_guard lock(mutex_);
  slots_[static_cast<size_t>(face)] = target;
}

void ListenerRegistry::setAll(rtc::OrvaEngineListener* l) {
  std::lock_guard lock(mutex_);
  FaceSet faces;
  if (l != nullptr) {
    faces = {l, l, l, l, l, l, l, nullptr};
  }
  slots_[0] = faces.rtc;
  slots_[1] = faces.service;
  slots_[2] = faces.audio;
  slots_[3] = faces.transcoder;
  slots_[4] = faces.device;
  slots_[5] = faces.channel;
  slots_[6] = faces.live;
}

void ListenerRegistry::clearAll() {
  std::lock_guard lock(mutex_);
  slots_.fill(nullptr);
}

std::vector<size_t> ListenerRegistry::allSlots() {
  std::vector<size_t> slots(kSlots);
  for (size_t i = 0; i < kSlots; ++i) slots[i] = i;
  return slots;
}

FaceSet ListenerRegistry::toFaceSet(const std::vector<void*>& t) {
  return {static_cast<rtc::RtcEngineListener*>(t[0]),    static_cast<rtc::MediaServiceListener*>(t[1]),
          static_cast<rtc::AudioServiceListener*>(t[2]), static_cast<rtc::ILocalMediaTranscoderCallback*>(t[3]),
          static_cast<rtc::IMediaDeviceCallback*>(t[4]), static_cast<rtc::MediaChannelListener*>(t[5]),
          static_cast<rtc::MediaLiveListener*>(t[6]),    static_cast<rtc::VideoFrameProcessor*>(t[7])};
}

void ListenerRegistry::forget(rtc::OrvaEngineListener* listener, rtc::VideoFrameProcessor* processor) {
  // The same object seen through each face: base-class pointers differ.
  std::array<void*, kSlots> faces{};
  if (listener != nullptr) {
    faces = {
        static_cast<rtc::RtcEngineListener*>(listener),    static_cast<rtc::MediaServiceListener*>(listener),
        static_cast<rtc::AudioServiceListener*>(listener), static_cast<rtc::ILocalMediaTranscoderCallback*>(listener),
        static_cast<rtc::IMediaDeviceCallback*>(listener), static_cast<rtc::MediaChannelListener*>(listener),
        static_cast<rtc::MediaLiveListener*>(listener),    nullptr};
  }
  faces[kSlots - 1] = processor;

  std::unique_lock lock(mutex_);
  std::vector<const void*> forgotten;
  for (size_t i = 0; i < kSlots; ++i) {
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
