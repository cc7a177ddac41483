// Where this module lives on disk, asked of the dynamic loader.
#include <dlfcn.h>

#include "platform/platform.h"

namespace orva::platform {
namespace {

// An object with internal linkage: its address can only lie inside this
// module, whereas a function's address may be a stub in the executable.
const char kAnchor = 0;

}  // namespace

std::string moduleFilePath() {
  Dl_info info{};
  if (dladdr(&kAnchor, &info) == 0 || info.dli_fname == nullptr) {
    return {};
  }
  return info.dli_fname;
}

char pathSeparator() { return '/'; }

void pinThisModule() {
  Dl_info info{};
  if (dladdr(&kAnchor, &info) == 0 || info.dli_fname == nullptr) return;
  // Opening the loaded module again with RTLD_NODELETE marks it for good;
  // the extra reference is never closed on purpose.
  (void)dlopen(info.dli_fname, RTLD_NOW | RTLD_NOLOAD | RTLD_NODELETE);
}

}  // namespace orva::platform
