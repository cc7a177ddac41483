// The state of one wrapper call, and how a wrapper fails.
//
// Every generated wrapper is a function `bool body(Call&)` that checks the
// argument count, converts the receiver and each argument, calls the native
// member and sets the result; on the first failure it returns
// `call.fail("fixed text")`. The mode decides what failing means:
//
//   1. kThrow: the text is thrown at once as a plain script Error. Direct
//      calls of a member with one signature use this mode.
//   2. kHold: the text is kept instead, so that a dispatcher can try the next
//      signature of an overloaded member. Conversions run before the native
//      call, so a failed candidate has changed nothing.
//   3. A dispatcher tries candidates in declaration order, each only when the
//      argument count equals its own; the first that succeeds ends the call.
//      When none does, a function throws "Illegal arguments for function
//      <name>."; a constructor throws the held failure of the last candidate
//      whose count matched, or "Illegal arguments for construction of
//      <template>" when no count matched.
#pragma once

#include <v8.h>

#include "errors.h"

namespace orva::binding {

class Call {
 public:
  enum Mode { kThrow, kHold };

  explicit Call(const v8::FunctionCallbackInfo<v8::Value>& info, Mode mode = kThrow) : info(info), mode_(mode) {}

  const v8::FunctionCallbackInfo<v8::Value>& info;

  v8::Isolate* isolate() const { return info.GetIsolate(); }

  /// Fails the call with `message` (a literal that outlives the call):
  /// throws it or holds it. Always answers false.
  [[gnu::cold]] bool fail(const char* message) {
    if (mode_ == kThrow) {
      throwError(info.GetIsolate(), message);
    } else {
      held_ = message;
    }
    return false;
  }

  /// The last held failure, or null.
  const char* held() const { return held_; }

 private:
  Mode mode_;
  const char* held_ = nullptr;
};

/// Ends an overloaded constructor that no candidate accepted.
[[gnu::cold]] inline void failConstruction(Call& call, const char* noMatch) {
  throwError(call.isolate(), call.held() != nullptr ? call.held() : noMatch);
}

}  // namespace orva::binding
