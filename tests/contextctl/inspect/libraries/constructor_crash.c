// SPDX-License-Identifier: MIT
#include <signal.h>

__attribute__((constructor)) static void crash(void) {
  raise(SIGSEGV);
}
