// raise(face, method, ...args): every callback of the eight listener faces,
// its arguments converted from JavaScript on the calling thread, to be made
// on an engine thread with the listener registered for that face.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "control.h"
#include "js_values.h"

namespace test_control {

namespace control = orva::loopback::control;

// Makes the call on `registered`; false when its face has no listener.
using Raise = std::function<bool(const control::Registered& registered)>;

// The call for face.method with `args`; empty when there is no such method.
Raise findRaise(const std::string& face, const std::string& method, const JsArgs& args);

// Every member script may raise, as "Face.member", with the kind of value
// each parameter takes ("integer", "string|null", "NetworkStats", ...).
std::vector<std::pair<std::string, std::vector<std::string>>> raiseSignatures();

}  // namespace test_control
