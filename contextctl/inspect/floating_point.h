// SPDX-License-Identifier: MIT
// Conventions of floating-point code. Code of different conventions must not share a process.
#ifndef CPP2C_CONTEXTCTL_INSPECT_FLOATING_POINT_H
#define CPP2C_CONTEXTCTL_INSPECT_FLOATING_POINT_H

#include <string>

namespace contextctl {

class ElfImage;
struct Platform;

constexpr int kFloatNotStated = -1;

// The Val_GNU_MIPS_ABI_FP_ number in the flags segment of a MIPS file or, from older tools, in its build
// attributes.
int mipsFloat(const ElfImage& image);

// A description; empty if the machine has only one convention.
std::string floatingPoint(const Platform& platform);

// Whether code of both conventions can share a process. A convention that is not stated fits all.
bool floatingPointFits(const Platform& one, const Platform& other);

}  // namespace contextctl

#endif
