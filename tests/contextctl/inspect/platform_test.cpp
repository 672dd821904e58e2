// SPDX-License-Identifier: MIT
#include "contextctl/inspect/platform.h"

#include <elf.h>

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "contextctl/inspect/elf_image.h"
#include "tests/contextctl/inspect/elf_file.h"

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

std::string described(int machine, std::uint32_t flags) {
  Platform platform;
  platform.word_size = 32;
  platform.machine = machine;
  platform.flags = flags;
  return describe(platform);
}

std::string described(const ElfFile& file) {
  return describe(platformOf(ElfImage("x.so", file.content())));
}

ElfFile mipsFile(std::uint32_t flags, char floating_point) {
  ElfFile file;
  file.is64 = false;
  file.big_endian = true;
  file.machine = EM_MIPS;
  file.flags = flags;
  file.segments = {{PT_MIPS_ABIFLAGS, std::string(7, '\0') + floating_point + std::string(16, '\0')}};
  return file;
}

size_t mipsFloatDifferences(int theirs, int ours) {
  Platform one, other;
  one.word_size = other.word_size = 32;
  one.machine = other.machine = EM_MIPS;
  one.mips_float = theirs;
  other.mips_float = ours;
  return differences(one, other).size();
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

TEST(PlatformTest, EveryRiscvFloatingPointHasAName) {
  const std::pair<std::uint32_t, const char*> names[] = {
      {EF_RISCV_FLOAT_ABI_SOFT, "software"},
      {EF_RISCV_FLOAT_ABI_SINGLE, "single-precision hardware"},
      {EF_RISCV_FLOAT_ABI_DOUBLE, "double-precision hardware"},
      {EF_RISCV_FLOAT_ABI_QUAD, "quadruple-precision hardware"}};
  for (const auto& [flags, name] : names)
    EXPECT_EQ(described(EM_RISCV, flags),
              std::string("32-bit little-endian RISC-V, ") + name + " floating point");
}

TEST(PlatformTest, EveryArmFloatingPointHasAName) {
  EXPECT_EQ(described(EM_ARM, EF_ARM_ABI_FLOAT_HARD), "32-bit little-endian ARM, hardware floating point");
  EXPECT_EQ(described(EM_ARM, EF_ARM_ABI_FLOAT_SOFT), "32-bit little-endian ARM, software floating point");
  EXPECT_EQ(described(EM_ARM, 0), "32-bit little-endian ARM, floating point not stated");
}

TEST(PlatformTest, TheHeaderOfTheFileIsDescribed) {
  ElfFile file;
  EXPECT_EQ(described(file), "64-bit little-endian x86-64");
  file.is64 = false;
  EXPECT_EQ(described(file), "32-bit little-endian x86-64");
  file.big_endian = true;
  EXPECT_EQ(described(file), "32-bit big-endian x86-64");
  file.machine = EM_68K;
  EXPECT_EQ(described(file), "32-bit big-endian m68k");
  file.machine = 999;
  EXPECT_EQ(described(file), "32-bit big-endian machine 999");
}

TEST(PlatformTest, TheFlagsOfMipsAreDescribed) {
  EXPECT_EQ(described(mipsFile(0x1000 | EF_MIPS_ARCH_32R2, 1)),
            "32-bit big-endian MIPS, o32, mips32r2, double-precision hardware floating point");
  EXPECT_EQ(described(mipsFile(EF_MIPS_ABI2 | EF_MIPS_ARCH_3, 3)),
            "32-bit big-endian MIPS, n32, mips3, software floating point");
  EXPECT_EQ(described(mipsFile(EF_MIPS_ARCH_1, 0)),
            "32-bit big-endian MIPS, no named calling convention, mips1, any floating point");
  EXPECT_EQ(described(mipsFile(0x1000 | 0x90000000 | EF_MIPS_NAN2008, 8)),
            "32-bit big-endian MIPS, o32, mips32r6, unknown floating point with 2008 NaNs");
  EXPECT_EQ(described(mipsFile(0x1000 | EF_MIPS_ARCH_32R2, 7)),
            "32-bit big-endian MIPS, o32, mips32r2, "
            "64-bit hardware floating point without odd single registers");
  ElfFile wide = mipsFile(EF_MIPS_ARCH_64R2, 6);
  wide.is64 = true;
  EXPECT_EQ(described(wide), "64-bit big-endian MIPS, n64, mips64r2, 64-bit hardware floating point");
  ElfFile silent = mipsFile(0x1000, 0);
  silent.segments.clear();
  EXPECT_EQ(described(silent), "32-bit big-endian MIPS, o32, mips1, floating point not stated");
}

TEST(PlatformTest, MipsFloatingPointFitsByItsRegisters) {
  // As Val_GNU_MIPS_ABI_FP_: any, double, single, soft, old 64, xx, 64, 64a.
  constexpr int kAny = 0, kDouble = 1, kSingle = 2, kSoft = 3, kXx = 5, k64 = 6, k64A = 7;
  const std::pair<int, int> fitting[] = {{kAny, kSoft},  {kSoft, kAny},  {-1, kSoft},
                                         {kXx, kDouble}, {kDouble, kXx}, {kXx, k64},
                                         {k64A, kXx},    {k64, k64A},    {kSoft, kSoft}};
  for (const auto& [one, other] : fitting) EXPECT_EQ(mipsFloatDifferences(one, other), 0u) << one << other;
  const std::pair<int, int> different[] = {{kDouble, kSoft}, {kDouble, kSingle}, {kXx, kSoft},
                                           {kSingle, kXx},   {k64, kDouble},     {kDouble, k64A}};
  for (const auto& [one, other] : different) EXPECT_EQ(mipsFloatDifferences(one, other), 1u) << one << other;
}

TEST(PlatformTest, Mips2008NansAreADifference) {
  EXPECT_EQ(floatDifferences(EM_MIPS, EF_MIPS_NAN2008, 0),
            Differences{"floating point not stated with 2008 NaNs, not floating point not stated"});
}

TEST(PlatformTest, EachFieldOfTheHeaderIsADifference) {
  const Platform ours = platformOf(ElfImage("x.so", ElfFile().content()));
  Platform theirs = ours;
  theirs.word_size = 32;
  EXPECT_EQ(differences(theirs, ours), Differences{"32-bit, not 64-bit"});
  EXPECT_FALSE(sameLoader(theirs, ours));
  theirs = ours;
  theirs.big_endian = true;
  EXPECT_EQ(differences(theirs, ours), Differences{"big-endian, not little-endian"});
  EXPECT_FALSE(sameLoader(theirs, ours));
  theirs = ours;
  theirs.machine = EM_AARCH64;
  EXPECT_EQ(differences(theirs, ours), Differences{"ARM64, not x86-64"});
  EXPECT_FALSE(sameLoader(theirs, ours));
  EXPECT_TRUE(sameLoader(ours, ours));
}

TEST(PlatformTest, TheConventionAndTheReleaseOfMipsAreDifferences) {
  EXPECT_EQ(floatDifferences(EM_MIPS, EF_MIPS_ABI2, 0x1000), Differences{"n32, not o32"});
  EXPECT_EQ(floatDifferences(EM_MIPS, 0x1000 | 0x90000000, 0x1000),
            Differences{"release 6, not a release before 6"});
  EXPECT_EQ(floatDifferences(EM_MIPS, 0x1000 | EF_MIPS_ARCH_32R2, 0x1000), Differences{});
}

TEST(PlatformTest, OtherRiscvFlagsAreIgnored) {
  EXPECT_EQ(floatDifferences(EM_RISCV, EF_RISCV_RVC, 0), Differences{});
}

}  // namespace
}  // namespace contextctl
