// SPDX-License-Identifier: MIT
// Uses the library and then waits, so that another process can measure its memory.
#include <stdio.h>

#include "include_c"

int main(void) {
  if (c_context_init(0, 0) != C_RESULT_OK) return 1;
  puts("ready");
  fflush(stdout);
  getchar();
  c_context_deinit();
  return 0;
}
