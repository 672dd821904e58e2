// SPDX-License-Identifier: MIT
#include "contextctl/inspect/platform.h"

#include <elf.h>

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace contextctl {
namespace {

using Differences = std::vector<std::string>;

Differences floatDifferences(int machine, std::uint32_t theirs, std::uint32_t ours) {
  Platform one, other;
  one.word_size = other.word_size = 32;
  one.machine = other.machine = machine;
  one.flags = theirs;
  other.flags = ours;
  return differences(one, other);
}

TEST(PlatformTest, DifferentArmFloatingPointIsADifference) {
  EXPECT_EQ(floatDifferences(EM_ARM, EF_ARM_ABI_FLOAT_SOFT, EF_ARM_ABI_FLOAT_HARD),
            Differences{"software floating point, not hardware floating point"});
}

TEST(PlatformTest, UnstatedArmFloatingPointFits) {
  EXPECT_EQ(floatDifferences(EM_ARM, 0, EF_ARM_ABI_FLOAT_HARD), Differences{});
}

TEST(PlatformTest, DifferentRiscvFloatingPointIsADifference) {
  EXPECT_EQ(floatDifferences(EM_RISCV, EF_RISCV_FLOAT_ABI_SOFT, EF_RISCV_FLOAT_ABI_DOUBLE),
            Differences{"software floating point, not double-precision hardware floating point"});
}

TEST(PlatformTest, OtherRiscvFlagsAreIgnored) {
  EXPECT_EQ(floatDifferences(EM_RISCV, EF_RISCV_RVC, 0), Differences{});
}

}  // namespace
}  // namespace contextctl
