#include "fatal.h"

#include <cstdio>
#include <cstdlib>

namespace orva::binding {

void fatal(const char* what) {
  std::fprintf(stderr, "%s: assertion failed: %s\n", kBindingSource, what);
  std::fflush(stderr);
  std::abort();
}

}  // namespace orva::binding
