// SPDX-License-Identifier: MIT
#include "host/loop/event_base.h"

#include "binding/context.h"
#include "host/include/cpp2c_host.h"
#include "host/start_error.h"
#include "include_c"

namespace {

// libevent has one message function for the whole process and gives it nothing of ours.
ILog* g_log = nullptr;

struct FreeConfig {
  void operator()(event_config* config) const { event_config_free(config); }
};

// Timers by the microsecond, as the kernel has them.
event_base* newBase() {
  const std::unique_ptr<event_config, FreeConfig> config(event_config_new());
  if (config == nullptr) return nullptr;
  event_config_set_flag(config.get(), EVENT_BASE_FLAG_PRECISE_TIMER);
  return event_base_new_with_config(config.get());
}

void logMessage(int severity, const char* text) {
  g_log->record("libevent", severity >= EVENT_LOG_WARN ? C_LOG_WARNING : C_LOG_DEBUG, text);
}

}  // namespace

EventBase::EventBase(ILog& log) {
  g_log = &log;
  event_set_log_callback(logMessage);
  base_.reset(newBase());
  if (base_ == nullptr || event_base_priority_init(base_.get(), kLastPriority + 1) != 0) {
    throw StartError(C_RESULT_SYSTEM_CALL, "the event loop cannot be made");
  }
}

EventBase::~EventBase() {
  base_.reset();
  event_set_log_callback(nullptr);
  g_log = nullptr;
}
