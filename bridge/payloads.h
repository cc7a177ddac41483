// The script objects that structured events carry as their last argument.
//
// Payloads are built from own data properties (CreateDataProperty, arrays
// from their elements), so no setter that script put on Object.prototype or
// Array.prototype runs. Building fails without a script exception of its own
// only when V8 cannot make a value (a text beyond its string length limit, an
// exhausted heap); the drain then does not deliver that event. The keys,
// in their order, are those of the event description (events.desc).
#pragma once

#include <v8.h>

#include <array>
#include <string>

#include "frame_sink.h"
#include "pending_event.h"

namespace orva::bridge {

/// `value` as a script string (UTF-8); empty when V8 cannot hold it.
v8::MaybeLocal<v8::String> scriptText(v8::Isolate* isolate, const std::string& value);

/// Fills `target` with a payload of network statistics, user volumes or an
/// echo result; other kinds leave it empty. False when a value could not be
/// made.
bool fillPayload(v8::Local<v8::Context> context, PayloadKind kind, const EventPayload& payload,
                 v8::Local<v8::Object> target);

/// The payload of a frame event: its metadata, the registration, and empty
/// byte views. Called with the frame lock held; `keys` caches the key names.
v8::MaybeLocal<v8::Object> framePayload(v8::Local<v8::Context> context, const PendingEvent& event,
                                        const FrameSink& frames,
                                        std::array<v8::Global<v8::String>, kVideoFramePayloadKeys.size()>& keys);

}  // namespace orva::bridge
