#include "event_handler.h"

#include "diagnostics/engine_calls.h"
#include "wrapper_state.h"

namespace Orva::Rtc {

OrvaEngineEventHandler::OrvaEngineEventHandler() : state(std::make_unique<orva::bridge::WrapperState>()) {}

OrvaEngineEventHandler::~OrvaEngineEventHandler() = default;

void OrvaEngineEventHandler::report(int type, int category, int code, const std::string& message) {
  orva::diagnostics::reportError(static_cast<SentryReportType>(type), category, code, message);
}

}  // namespace Orva::Rtc
