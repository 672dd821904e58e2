// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_INSPECT_PLATFORM_H
#define CPP2C_CONTEXTCTL_INSPECT_PLATFORM_H

#include <cstdint>
#include <string>
#include <vector>

namespace contextctl {

class ElfImage;

// The machine that an ELF file is built for.
struct Platform {
  int word_size = 0;  // in bits
  bool big_endian = false;
  int machine = 0;          // an EM_ number
  std::uint32_t flags = 0;  // their meaning depends on the machine
  int mips_float = -1;      // a Val_GNU_MIPS_ABI_FP_ number; -1: not stated
};

Platform platformOf(const ElfImage& image);

// A description as in "32-bit big-endian MIPS, o32, mips32r2, double-precision hardware floating point".
std::string describe(const Platform& platform);

// Whether one loader accepts both: the same word size, byte order and machine.
bool sameLoader(const Platform& one, const Platform& other);

// Why code for `theirs` cannot share a process with code for `ours`; empty: it can.
std::vector<std::string> differences(const Platform& theirs, const Platform& ours);

}  // namespace contextctl

#endif
