// SPDX-License-Identifier: MIT
#ifndef CPP2C_FUZZ_HARNESS_H
#define CPP2C_FUZZ_HARNESS_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

// Each harness defines it: runs the code under test on any bytes and returns 0. The name is libFuzzer's.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

// Aborts the process unless the property holds, also in a build without assertions.
inline void require(bool holds, const char* property) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", property);
  std::abort();
}

#endif
