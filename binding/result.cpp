// SPDX-License-Identifier: MIT
#include "binding/result.h"

#include <cstdarg>
#include <cstdio>

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
    default:  // C_RESULT_NO_CALLBACK too: it is an answer to the framework and never part of a diagnostic
      return "unknow error!";
  }
}

int c_debug_out(const char* file, int line, const char* format, ...) {
  // The limit leaves the last byte of the buffer unused: texts end at 1022 bytes, not at 1023. Readers of the
  // output rely on the length, so it stays.
  char text[1024] = {};
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof text - 1, format, arguments);
  va_end(arguments);

  IContext* context = currentContext();
  return context != nullptr ? context->debugOut(file, line, text) : 0;
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
