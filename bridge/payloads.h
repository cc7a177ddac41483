// The script objects that structured events carry as their last argument.
#pragma once

#include <v8.h>

#include <array>

#include "frame_sink.h"
#include "pending_event.h"

namespace orva::bridge {

/// Fills `target` for "OnNetworkStats", "OnUserVoiceVolume" or "OnEchoResult"
/// (by `name`); other names leave it empty.
void fillPayload(v8::Local<v8::Context> context, const char* name, const EventPayload& payload,
                 v8::Local<v8::Object> target);

/// The payload of a frame event: its metadata, the registration, and empty
/// byte views. Called with the frame lock held; `keys` caches the key names.
v8::Local<v8::Object> framePayload(v8::Local<v8::Context> context, const PendingEvent& event, const FrameSink& frames,
                                   std::array<v8::Persistent<v8::String>, 16>& keys);

}  // namespace orva::bridge
