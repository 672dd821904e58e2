// SPDX-License-Identifier: MIT
#include "context/loop/event_base.h"

#include "binding/context.h"
#include "context/include/cpp2c_host.h"
#include "context/start_error.h"
#include "include_c"

namespace {

// libevent has one message function for the whole process and gives it nothing of ours.
ILog* g_log = nullptr;

void logMessage(int severity, const char* text) {
  g_log->record("libevent", severity >= EVENT_LOG_WARN ? C_LOG_WARNING : C_LOG_DEBUG, text);
}

}  // namespace

EventBase::EventBase(ILog& log) {
  g_log = &log;
  event_set_log_callback(logMessage);
  base_.reset(event_base_new());
  if (base_ == nullptr) throw StartError(C_RESULT_SYSTEM_CALL, "the event loop cannot be made");
}

EventBase::~EventBase() {
  base_.reset();
  event_set_log_callback(nullptr);
  g_log = nullptr;
}
