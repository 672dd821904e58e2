// SPDX-License-Identifier: MIT
#ifndef CPP2C_FUZZ_HARNESS_H
#define CPP2C_FUZZ_HARNESS_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

// What a harness defines: takes any bytes, and returns 0. The name is libFuzzer's.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

// Ends the process unless what must hold does, in a build without assertions too.
inline void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}

#endif
