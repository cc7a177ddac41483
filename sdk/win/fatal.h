// Faults inside the binding runtime: broken invariants, never script errors.
// They print one line naming the binding source and end the process.
#pragma once

namespace orva::binding {

/// The source name every runtime assertion carries.
inline constexpr const char* kBindingSource = "sdk/win/interface_swig_wrap";

/// Prints "<binding source>: assertion failed: <what>" and aborts.
[[noreturn]] void fatal(const char* what);

/// Ends the process unless `condition` holds; `what` names the invariant.
inline void check(bool condition, const char* what) {
  if (!condition) [[unlikely]] {
    fatal(what);
  }
}

}  // namespace orva::binding
