// SPDX-License-Identifier: MIT
#include "binding/result.h"

#include "binding/bounded_text.h"
#include "binding/services.h"

const char* errorText(int code) {
  switch (code) {
    case C_RESULT_OK:
      return "is ok!";
    case C_RESULT_NO_USERDATA:
      return "userdata is null?";
    case C_RESULT_REDUNDANT:
      return "redundancy config!";
    case C_RESULT_NO_MEMORY:
      return "memory out!";
    case C_RESULT_NOT_FOUND:
      return "not find!";
    case C_RESULT_TIMEOUT:
      return "time out!";
    case C_RESULT_SYSTEM_CALL:
      return "call system function failed!";
    case C_RESULT_NOT_INIT:
      return "not init!";
    case C_RESULT_PARAM:
      return "param error!";
    default:  // also C_RESULT_NO_CALLBACK, which never appears in a diagnostic
      return "unknow error!";
  }
}

int c_debug_out(const char* file, int line, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const BoundedText<kDiagnosticBuffer> text(format, arguments);
  va_end(arguments);

  IContext* context = currentContext();
  return context != nullptr ? context->debugOut(file, line, text.c_str()) : 0;
}

int refuse(int code, const char* message, int line) {
  c_debug_out(kTraceFile, line, "%s", message);
  return code;
}

int failed(int code, const char* operation, int line) {
  c_debug_out(kTraceFile, line, "%s %s", operation, errorText(code));
  return code;
}

int leave(int code, const char* function, int line) {
  c_debug_out(kTraceFile, line, "%s: Leave: %s\n", function, errorText(code));
  return code;
}
