// SPDX-License-Identifier: MIT
// Shell commands, log records, memory.
#include <cstdlib>

#include "binding/bounded_text.h"
#include "binding/limits.h"
#include "binding/services.h"

namespace {

using CommandText = BoundedText<kCommandBuffer>;
using RecordText = BoundedText<kRecordBuffer>;

}  // namespace

int c_system_call(const char* format, ...) {
  IContext* context = currentContext();
  if (context == nullptr) return 0;

  va_list arguments;
  va_start(arguments, format);
  const CommandText command(format, arguments);
  va_end(arguments);
  context->systemCall(command.c_str());
  // Returns the length of the printed line; c_system_call2() returns the result of the command.
  return std::printf("cmd:%s\r\n", command.c_str());
}

int c_system_call2(char* format, ...) {
  IContext* context = currentContext();
  if (context == nullptr) return C_RESULT_SYSTEM_CALL;

  va_list arguments;
  va_start(arguments, format);
  const CommandText command(format, arguments);
  va_end(arguments);
  return context->systemCall2(command.c_str());
}

int c_popen_call(char* format, ...) {
  IContext* context = currentContext();
  if (context == nullptr) return 0;

  va_list arguments;
  va_start(arguments, format);
  const CommandText command(format, arguments);
  va_end(arguments);
  return context->popenCall(command.c_str());
}

void c_log_record(const char* module, int code, const char* format, ...) {
  ILog* log = currentLog();
  if (log == nullptr) return;

  va_list arguments;
  va_start(arguments, format);
  const RecordText text(format, arguments);
  va_end(arguments);
  log->record(module, code, text.c_str());
}

// The caller's file and line are part of the interface but not used.
char* c_malloc(unsigned int size, const char* /*file*/, int /*line*/) {
  return static_cast<char*>(std::calloc(1, size));
}

void c_free(char* ptr) {
  std::free(ptr);
}
