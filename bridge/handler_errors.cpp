#include "handler_errors.h"

#include <node.h>

#include <cstdio>

#include "sdk/win/v8_compat.h"

namespace orva::bridge {
namespace {

// Calls process[method](...arguments) and answers whether the result is
// truthy. Script may have replaced the method: what it throws is dropped
// and counts as no.
bool ask(v8::Local<v8::Context> context, v8::Local<v8::Object> process, v8::Local<v8::String> method, int argc,
         v8::Local<v8::Value>* argv) {
  v8::Isolate* isolate = binding::isolateOf(context);
  v8::TryCatch ignored(isolate);
  v8::Local<v8::Value> function;
  v8::Local<v8::Value> answer;
  if (!process->Get(context, method).ToLocal(&function) || !function->IsFunction() ||
      !function.As<v8::Function>()->Call(context, process, argc, argv).ToLocal(&answer)) {
    return false;
  }
  return answer->BooleanValue(isolate);
}

// Whether Node.js would hand an uncaught exception to script rather than end
// the process: node::FatalException ends it when nobody listens.
bool scriptCatchesUncaught(v8::Local<v8::Context> context, v8::Local<v8::Object> process) {
  if (process.IsEmpty()) return false;
  v8::Isolate* isolate = binding::isolateOf(context);
  if (ask(context, process, v8::String::NewFromUtf8Literal(isolate, "hasUncaughtExceptionCaptureCallback"), 0,
          nullptr)) {
    return true;
  }
  v8::Local<v8::Value> event = v8::String::NewFromUtf8Literal(isolate, "uncaughtException");
  return ask(context, process, v8::String::NewFromUtf8Literal(isolate, "listenerCount"), 1, &event);
}

void printToStderr(v8::Local<v8::Context> context, const v8::TryCatch& caught) {
  v8::Isolate* isolate = binding::isolateOf(context);
  // Turning the exception into text runs script (a stack getter, toString);
  // what that throws leaves the plainer form.
  v8::TryCatch ignored(isolate);
  v8::Local<v8::Value> detail;
  if (!caught.StackTrace(context).ToLocal(&detail) || !detail->IsString()) detail = caught.Exception();
  v8::String::Utf8Value message(isolate, detail);
  std::fprintf(stderr, "orvaEngine: the event handler threw: %s\n", *message != nullptr ? *message : "(unprintable)");
}

}  // namespace

void reportHandlerError(v8::Local<v8::Context> context, v8::Local<v8::Object> process, const v8::TryCatch& caught) {
  v8::Isolate* isolate = binding::isolateOf(context);
  if (scriptCatchesUncaught(context, process)) {
    // A worker being terminated while its listeners were asked runs no more script.
    if (!isolate->IsExecutionTerminating()) node::FatalException(isolate, caught);
  } else {
    printToStderr(context, caught);
  }
}

}  // namespace orva::bridge
