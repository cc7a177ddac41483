// orva_test_control.node: the loopback engine's control seam for JavaScript
// tests. It links the same engine library as the product addon, so what it
// raises reaches the product's registered listeners.
#include <node_api.h>

#include <cstring>

#include "control.h"
#include "js_values.h"
#include "raise_table.h"

namespace test_control {
namespace {

namespace control = orva::loopback::control;

std::vector<napi_value> argsOf(napi_env env, napi_callback_info info) {
  size_t count = 16;
  std::vector<napi_value> args(count);
  napi_get_cb_info(env, info, &count, args.data(), nullptr, nullptr);
  args.resize(std::min<size_t>(count, 16));
  return args;
}

napi_value Journal(napi_env env, napi_callback_info) { return fromStrings(env, control::journal()); }
napi_value ClearJournal(napi_env env, napi_callback_info) {
  control::clearJournal();
  return undefined(env);
}
napi_value LogLines(napi_env env, napi_callback_info) { return fromStrings(env, control::logLines()); }
napi_value ClearLogLines(napi_env env, napi_callback_info) {
  control::clearLogLines();
  return undefined(env);
}
napi_value ClearCrashReports(napi_env env, napi_callback_info) {
  control::clearCrashReports();
  return undefined(env);
}

napi_value CrashReports(napi_env env, napi_callback_info) {
  const auto reports = control::crashReports();
  napi_value array;
  napi_create_array_with_length(env, reports.size(), &array);
  for (size_t i = 0; i < reports.size(); ++i) {
    napi_value entry, type;
    napi_create_object(env, &entry);
    napi_create_int32(env, reports[i].type, &type);
    napi_set_named_property(env, entry, "type", type);
    napi_set_named_property(env, entry, "tag", fromString(env, reports[i].tag));
    napi_set_named_property(env, entry, "message", fromString(env, reports[i].message));
    napi_set_element(env, array, static_cast<uint32_t>(i), entry);
  }
  return array;
}

napi_value LiveInstances(napi_env env, napi_callback_info) {
  napi_value object;
  napi_create_object(env, &object);
  for (const auto& [name, count] : control::liveInstances()) {
    napi_value value;
    napi_create_int64(env, count, &value);
    napi_set_named_property(env, object, name.c_str(), value);
  }
  return object;
}

napi_value Reset(napi_env env, napi_callback_info) {
  control::reset();
  return undefined(env);
}

napi_value EngineRunning(napi_env env, napi_callback_info) { return fromBool(env, control::engineRunning()); }

// { "Face.member": [parameter kind, ...] } for every member raise() knows.
napi_value RaiseSignatures(napi_env env, napi_callback_info) {
  napi_value object;
  napi_create_object(env, &object);
  for (const auto& [name, kinds] : raiseSignatures()) {
    napi_set_named_property(env, object, name.c_str(), fromStrings(env, kinds));
  }
  return object;
}

// raise(face, method, ...args) -> whether a listener heard it.
napi_value RaiseEvent(napi_env env, napi_callback_info info) {
  auto args = argsOf(env, info);
  if (args.size() < 2) {
    napi_throw_type_error(env, nullptr, "raise(face, method, ...args)");
    return nullptr;
  }
  const std::string face = toString(env, args[0]);
  const std::string method = toString(env, args[1]);
  Raise raise = findRaise(face, method, JsArgs(env, args, 2));
  if (!raise) {
    napi_throw_type_error(env, nullptr, ("no listener method " + face + "." + method).c_str());
    return nullptr;
  }
  bool heard = false;
  control::runOnEngineThread([&](const control::Registered& registered) { heard = raise(registered); });
  return fromBool(env, heard);
}

// deliverFrame({width, height, size, data, type, strideY, strideU, strideV, extra, handle})
napi_value DeliverFrame(napi_env env, napi_callback_info info) {
  auto args = argsOf(env, info);
  napi_value options = args.empty() ? undefined(env) : args[0];
  control::Frame frame;
  frame.width = propInt(env, options, "width");
  frame.height = propInt(env, options, "height");
  frame.type = static_cast<Orva::Rtc::VideoType>(propInt(env, options, "type", Orva::Rtc::kI420));
  frame.strideY = propInt(env, options, "strideY");
  frame.strideU = propInt(env, options, "strideU");
  frame.strideV = propInt(env, options, "strideV");
  frame.extra = static_cast<uint32_t>(propDouble(env, options, "extra"));
  frame.handle = static_cast<uint64_t>(propDouble(env, options, "handle"));
  napi_value data = property(env, options, "data");
  bool isBuffer = false;
  if (!isNullish(env, data)) napi_is_buffer(env, data, &isBuffer);
  frame.hasData = isBuffer;
  if (isBuffer) {
    void* bytes = nullptr;
    size_t length = 0;
    napi_get_buffer_info(env, data, &bytes, &length);
    frame.data.assign(static_cast<uint8_t*>(bytes), static_cast<uint8_t*>(bytes) + length);
  }
  frame.size = propInt(env, options, "size", static_cast<int>(frame.data.size()));
  return fromBool(env, control::deliverFrame(frame));
}

napi_value RaiseConcurrently(napi_env env, napi_callback_info info) {
  auto args = argsOf(env, info);
  napi_value options = args.empty() ? undefined(env) : args[0];
  return fromBool(
      env, control::raiseConcurrently(propInt(env, options, "threads", 1), propInt(env, options, "perThread", 1)));
}

napi_value JoinRaisers(napi_env env, napi_callback_info) {
  control::joinRaisers();
  return undefined(env);
}

napi_value Init(napi_env env, napi_value exports) {
  const napi_property_descriptor functions[] = {
      {"journal", nullptr, Journal, nullptr, nullptr, nullptr, napi_default, nullptr},
      {"clearJournal", nullptr, ClearJournal, nullptr, nullptr, nullptr, napi_default, nullptr},
      {"crashReports", nullptr, CrashReports, nullptr, nullptr, nullptr, napi_default, nullptr},
      {"clearCrashReports", nullptr, ClearCrashReports, nullptr, nullptr, nullptr, napi_default, nullptr},
      {"logLines", nullptr, LogLines, nullptr, nullptr, nullptr, napi_default, nullptr},
      {"clearLogLines", nullptr, ClearLogLines, nullptr, nullptr, nullptr, napi_default, nullptr},
      {"liveInstances", nullptr, LiveInstances, nullptr, nullptr, nullptr, napi_default, nullptr},
      {"reset", nullptr, Reset, nullptr, nullptr, nullptr, napi_default, nullptr},
      {"engineRunning", nullptr, EngineRunning, nullptr, nullptr, nullptr, napi_default, nullptr},
      {"raiseSignatures", nullptr, RaiseSignatures, nullptr, nullptr, nullptr, napi_default, nullptr},
      {"raise", nullptr, RaiseEvent, nullptr, nullptr, nullptr, napi_default, nullptr},
      {"deliverFrame", nullptr, DeliverFrame, nullptr, nullptr, nullptr, napi_default, nullptr},
      {"raiseConcurrently", nullptr, RaiseConcurrently, nullptr, nullptr, nullptr, napi_default, nullptr},
      {"joinRaisers", nullptr, JoinRaisers, nullptr, nullptr, nullptr, napi_default, nullptr},
  };
  napi_define_properties(env, exports, sizeof functions / sizeof functions[0], functions);
  return exports;
}

}  // namespace
}  // namespace test_control

NAPI_MODULE(orva_test_control, test_control::Init)
