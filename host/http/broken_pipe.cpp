// SPDX-License-Identifier: MIT
#include "host/http/broken_pipe.h"

#include <signal.h>

namespace host {
namespace {

using Handler = void (*)(int);

// Not SIG_IGN: commands that the service runs would inherit that.
void doNothing(int /*signal*/) {}

Handler handler() {
  struct sigaction action {};
  sigaction(SIGPIPE, nullptr, &action);
  return action.sa_handler;
}

void replace(Handler older, Handler newer) {
  if (handler() != older) return;
  struct sigaction action {};
  action.sa_handler = newer;
  action.sa_flags = SA_RESTART;
  sigaction(SIGPIPE, &action, nullptr);
}

}  // namespace

BrokenPipe::BrokenPipe() {
  replace(SIG_DFL, doNothing);
}

BrokenPipe::~BrokenPipe() {
  replace(doNothing, SIG_DFL);
}

}  // namespace host
