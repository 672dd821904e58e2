// SPDX-License-Identifier: MIT
// How floating-point numbers are passed and computed: code of two kinds must not meet in one process.
#ifndef CPP2C_CONTEXTCTL_INSPECT_FLOATING_POINT_H
#define CPP2C_CONTEXTCTL_INSPECT_FLOATING_POINT_H

#include <string>

namespace contextctl {

class ElfImage;
struct Platform;

constexpr int kFloatNotStated = -1;

// What a MIPS file states in its flags segment or, as older tools make it, in its build attributes.
int mipsFloat(const ElfImage& image);

// In words; empty where the machine has but one kind.
std::string floatingPoint(const Platform& platform);

// Whether code of the two kinds can share a process; what is not stated is taken to fit.
bool floatingPointFits(const Platform& one, const Platform& other);

}  // namespace contextctl

#endif
