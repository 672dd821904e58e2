// SPDX-License-Identifier: MIT
// Stands still once the library is in use, for its memory to be looked at from outside.
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
