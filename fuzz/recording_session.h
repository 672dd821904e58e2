// SPDX-License-Identifier: MIT
#ifndef CPP2C_FUZZ_RECORDING_SESSION_H
#define CPP2C_FUZZ_RECORDING_SESSION_H

#include "binding/dll_mgr.h"
#include "include_c"
#include "tests/support/context_proxy.h"

// A new recording context, which the library has obtained. At the end, the library releases it, and no
// pointer to an object of the library remains: what it has not deleted is a leak.
class RecordingSession {
 public:
  RecordingSession() : proxy(renewContextProxy()) {
    getContext();
    proxy.calls.take();
  }
  ~RecordingSession() {
    proxy.calls.on_call = nullptr;
    c_context_deinit();
    renewContextProxy();
  }
  RecordingSession(const RecordingSession&) = delete;
  RecordingSession& operator=(const RecordingSession&) = delete;

  ContextProxy& proxy;
};

#endif
