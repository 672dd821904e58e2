// SPDX-License-Identifier: MIT
#include "util/harmless_signal.h"

#include <signal.h>

namespace util {
namespace {

using Handler = void (*)(int);

// Not SIG_IGN: commands that the service runs would inherit that.
void doNothing(int /*signal*/) {}

Handler handlerOf(int signal) {
  struct sigaction action {};
  sigaction(signal, nullptr, &action);
  return action.sa_handler;
}

bool replace(int signal, Handler older, Handler newer) {
  if (handlerOf(signal) != older) return false;
  struct sigaction action {};
  action.sa_handler = newer;
  action.sa_flags = SA_RESTART;
  return sigaction(signal, &action, nullptr) == 0;
}

}  // namespace

HarmlessSignal::HarmlessSignal(int signal)
    : signal_(signal), replaced_(replace(signal, SIG_DFL, doNothing)) {}

HarmlessSignal::~HarmlessSignal() {
  if (replaced_) replace(signal_, doNothing, SIG_DFL);
}

}  // namespace util
