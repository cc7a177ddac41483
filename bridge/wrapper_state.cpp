#include "wrapper_state.h"

#include "orva/engine.h"

namespace orva::bridge {
namespace {

void logToEngine(const char* message) { sdk_log_info("%s", message); }

}  // namespace

WrapperState::WrapperState() : frames(logToEngine) {}

// Reached at process exit, possibly after V8 and the environment are gone
// (process.exit() skips the environment's clean-up): a link that is still
// here belongs to them and is left alone, with the buffer memory it holds.
WrapperState::~WrapperState() = default;

void keepEventLoopAlive(WrapperState& state, bool alive) {
  state.keepAlive = alive;
  if (state.link == nullptr || state.link->ended) return;
  auto* handle = reinterpret_cast<uv_handle_t*>(&state.link->wake);
  if (alive) {
    uv_ref(handle);
  } else {
    uv_unref(handle);
  }
}

void neverDeliver(WrapperState& state) { state.queue.close(); }

}  // namespace orva::bridge
