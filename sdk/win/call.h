// The state of one wrapper call, and how a wrapper fails.
//
// Every generated wrapper is a function `bool body(Call&)` that checks the
// argument count, converts the receiver and each argument, calls the native
// member and sets the result; on the first failure it returns
// `call.fail("fixed text")`, or `call.failNull("fixed text")` when a null was
// given for a reference. The mode decides what failing means:
//
//   1. kThrow: the text is thrown at once as a plain script Error. Direct
//      calls of a member with one signature use this mode, and so do the
//      constructors of a class whose forms are chosen by argument count.
//   2. kTrial: a dispatcher tries the signatures of an overloaded member in
//      declaration order, each only when the argument count equals its own;
//      a failed candidate throws nothing, so that the next can be tried.
//      Conversions run before the native call, so it has changed nothing.
//   3. A null for a reference ends a trial at once: its "invalid null
//      reference" text is thrown whatever the mode, and the dispatcher stops
//      (`decided`), so that the message does not depend on candidate order.
//   4. When no candidate succeeds, a function throws "Illegal arguments for
//      function <name>." and a constructor "Illegal arguments for
//      construction of <template>".
//
// The registered callback runs all of this inside a guard that turns any
// native exception into a script Error (errors.h).
#pragma once

#include <v8.h>

#include "errors.h"

namespace orva::binding {

class Call {
 public:
  enum Mode { kThrow, kTrial };

  explicit Call(const v8::FunctionCallbackInfo<v8::Value>& info, Mode mode = kThrow) : info(info), mode_(mode) {}

  const v8::FunctionCallbackInfo<v8::Value>& info;

  v8::Isolate* isolate() const { return info.GetIsolate(); }

  /// Fails the call with `message` (a literal): throws it, or in a trial
  /// lets the next candidate try. Always answers false.
  [[gnu::cold]] bool fail(const char* message) {
    if (mode_ == kThrow) throwError(info.GetIsolate(), message);
    return false;
  }

  /// Fails the call for a null given where a reference is expected: throws
  /// `message` in every mode and decides the call. Always answers false.
  [[gnu::cold]] bool failNull(const char* message) {
    throwError(info.GetIsolate(), message);
    decided_ = true;
    return false;
  }

  /// Whether a failure ended the call for good: no other candidate is tried.
  bool decided() const { return decided_; }

 private:
  Mode mode_;
  bool decided_ = false;
};

}  // namespace orva::binding
