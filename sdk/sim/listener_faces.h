// The listener faces the engine calls out through, listed once: the seven
// faces of OrvaEngineListener, then the camera frame processor. The
// registry's slots, the set of registered targets that test control hands
// out and the test-control addon's raise table all expand this list (the
// raise table's generator reads the type names from the lines below, one
// `X(field, Type)` per face).
#pragma once

#include <cstddef>
#include <type_traits>

#include "orva/listeners.h"

// X(field, Type): the FaceSet field and the interface in Orva::Rtc, in slot order.
#define ORVA_LISTENER_FACES(X)                 \
  X(rtc, RtcEngineListener)                    \
  X(service, MediaServiceListener)             \
  X(audio, AudioServiceListener)               \
  X(transcoder, ILocalMediaTranscoderCallback) \
  X(device, IMediaDeviceCallback)              \
  X(channel, MediaChannelListener)             \
  X(live, MediaLiveListener)                   \
  X(processor, VideoFrameProcessor)

namespace orva::loopback {

namespace rtc = Orva::Rtc;

constexpr size_t countFaces() {
  size_t count = 0;
#define ORVA_FACE_COUNT(field, Type) ++count;
  ORVA_LISTENER_FACES(ORVA_FACE_COUNT)
#undef ORVA_FACE_COUNT
  return count;
}
inline constexpr size_t kFaceCount = countFaces();

// The slot of face T; kFaceCount for a type that is no face.
template <class T>
constexpr size_t slotOf() {
  size_t slot = 0;
  size_t found = kFaceCount;
#define ORVA_FACE_SLOT(field, Type)               \
  if (std::is_same_v<T, rtc::Type>) found = slot; \
  ++slot;
  ORVA_LISTENER_FACES(ORVA_FACE_SLOT)
#undef ORVA_FACE_SLOT
  return found;
}

template <class T>
concept ListenerFace = (slotOf<T>() < kFaceCount);

// Every registered target at one moment, for code that calls several.
struct FaceSet {
#define ORVA_FACE_FIELD(field, Type) rtc::Type* field = nullptr;
  ORVA_LISTENER_FACES(ORVA_FACE_FIELD)
#undef ORVA_FACE_FIELD

  // The target of face T.
  template <ListenerFace T>
  T* get() const {
    T* target = nullptr;
#define ORVA_FACE_GET(field, Type) \
  if constexpr (std::is_same_v<T, rtc::Type>) target = field;
    ORVA_LISTENER_FACES(ORVA_FACE_GET)
#undef ORVA_FACE_GET
    return target;
  }
};

}  // namespace orva::loopback
