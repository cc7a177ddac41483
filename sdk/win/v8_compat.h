// Every call whose form differs between the V8 versions this addon builds
// against, from Node.js 14 (V8 8.4) to Node.js 26 (V8 14.6). Everything else
// in the runtime, the bridge, the facade and the generated wrappers calls
// these helpers and never tests a version itself.
//
// Each helper does the same thing on every version; only the V8 call that
// does it changes. Where the headers of one of those Node.js releases (V8
// 8.4, 9.4, 10.2, 11.3, 12.4, 13.6, 14.6) have both the older and the newer
// call, the switch sits at that release, so that the V8 versions in between
// (Electron's) compile too. Two switches fall between releases that share no
// call: `isolateOf` moves before V8 14.1 deprecates the older call, and the
// internal-field pointers at V8 14.2, which brought the type tags.
#pragma once

#include <v8-version.h>
#include <v8.h>

#include <climits>
#include <cstddef>
#include <memory>

// Whether the V8 headers are of `major`.`minor` or later.
#define ORVA_V8_AT_LEAST(major, minor) \
  (V8_MAJOR_VERSION > (major) || (V8_MAJOR_VERSION == (major) && V8_MINOR_VERSION >= (minor)))

namespace orva::binding {

/// The isolate of `context`. V8 14 dropped `Context::GetIsolate`; the context
/// of a call is always one of the thread's current isolate, which is what
/// that call answered in its last versions.
inline v8::Isolate* isolateOf(v8::Local<v8::Context> context) {
#if ORVA_V8_AT_LEAST(14, 0)
  (void)context;
  return v8::Isolate::GetCurrent();
#else
  return context->GetIsolate();
#endif
}

/// The object that holds the accessor being run: the proxy whose field is
/// read or written, or the exports object of a constant or class.
template <class T>
v8::Local<v8::Object> holderOf(const v8::PropertyCallbackInfo<T>& info) {
#if ORVA_V8_AT_LEAST(13, 6)
  return info.HolderV2();
#else
  return info.Holder();
#endif
}

/// The context `object` was made in, when it has one.
inline v8::MaybeLocal<v8::Context> creationContextOf(v8::Isolate* isolate, v8::Local<v8::Object> object) {
#if ORVA_V8_AT_LEAST(13, 6)
  return object->GetCreationContext(isolate);
#elif ORVA_V8_AT_LEAST(9, 4)
  (void)isolate;
  return object->GetCreationContext();
#else
  (void)isolate;
  return object->CreationContext();
#endif
}

/// The native pointer in internal field `index` of `object`. V8 14.2 tags
/// each such pointer with a type; this addon uses the default tag, checked
/// further by the record arena (registry.h).
inline void* alignedPointerAt(v8::Local<v8::Object> object, int index) {
#if ORVA_V8_AT_LEAST(14, 2)
  return object->GetAlignedPointerFromInternalField(index, v8::kEmbedderDataTypeTagDefault);
#else
  return object->GetAlignedPointerFromInternalField(index);
#endif
}

inline void setAlignedPointerAt(v8::Local<v8::Object> object, int index, void* pointer) {
#if ORVA_V8_AT_LEAST(14, 2)
  object->SetAlignedPointerInInternalField(index, pointer, v8::kEmbedderDataTypeTagDefault);
#else
  object->SetAlignedPointerInInternalField(index, pointer);
#endif
}

/// Bytes of the UTF-8 form of `text`, a lone surrogate counted as the three
/// bytes of the replacement character that `writeUtf8` writes for it.
inline size_t utf8Length(v8::Isolate* isolate, v8::Local<v8::String> text) {
#if ORVA_V8_AT_LEAST(13, 6)
  return text->Utf8LengthV2(isolate);
#else
  return static_cast<size_t>(text->Utf8Length(isolate));
#endif
}

/// Writes the UTF-8 form of `text` into `buffer`, at most `capacity` bytes
/// and never part of a character, lone surrogates replaced, without a
/// terminating null. Answers the bytes written.
inline size_t writeUtf8(v8::Isolate* isolate, v8::Local<v8::String> text, char* buffer, size_t capacity) {
#if ORVA_V8_AT_LEAST(13, 6)
  return text->WriteUtf8V2(isolate, buffer, capacity, v8::String::WriteFlags::kReplaceInvalidUtf8);
#else
  const int limit = capacity > static_cast<size_t>(INT_MAX) ? INT_MAX : static_cast<int>(capacity);
  return static_cast<size_t>(text->WriteUtf8(isolate, buffer, limit, nullptr,
                                             v8::String::NO_NULL_TERMINATION | v8::String::REPLACE_INVALID_UTF8));
#endif
}

/// Whether `buffer` was detached (transferred, or its memory taken back).
/// Before V8 10.2 a buffer could not tell; one that reads empty is taken for
/// detached, which for a registered buffer changes nothing: an empty buffer
/// takes no frame either way.
inline bool wasDetached(v8::Local<v8::ArrayBuffer> buffer) {
#if ORVA_V8_AT_LEAST(10, 2)
  return buffer->WasDetached();
#else
  return buffer->ByteLength() == 0;
#endif
}

/// Whether script can resize the memory of `store` (`ArrayBuffer.prototype
/// .resize`). Before V8 11.3 script could make no such buffer without
/// experimental flags.
inline bool resizableByScript(const std::shared_ptr<v8::BackingStore>& store) {
#if ORVA_V8_AT_LEAST(11, 3)
  return store->IsResizableByUserJavaScript();
#else
  (void)store;
  return false;
#endif
}

}  // namespace orva::binding
