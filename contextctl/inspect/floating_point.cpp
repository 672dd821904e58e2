// SPDX-License-Identifier: MIT
#include "contextctl/inspect/floating_point.h"

#include <elf.h>

#include <algorithm>
#include <optional>

#include "contextctl/inspect/elf_image.h"
#include "contextctl/inspect/gnu_attributes.h"
#include "contextctl/inspect/platform.h"

namespace contextctl {
namespace {

constexpr const char* kMipsFloats[] = {
    "any floating point",
    "double-precision hardware floating point",
    "single-precision hardware floating point",
    "software floating point",
    "old 64-bit hardware floating point",
    "32- or 64-bit hardware floating point",
    "64-bit hardware floating point",
    "64-bit hardware floating point without odd single registers",
};

std::string mipsFloatingPoint(const Platform& platform) {
  std::string text = "floating point not stated";
  if (platform.mips_float > Val_GNU_MIPS_ABI_FP_MAX) text = "unknown floating point";
  if (platform.mips_float >= 0 && platform.mips_float <= Val_GNU_MIPS_ABI_FP_MAX)
    text = kMipsFloats[platform.mips_float];
  return (platform.flags & EF_MIPS_NAN2008) != 0 ? text + " with 2008 NaNs" : text;
}

std::string riscvFloatingPoint(const Platform& platform) {
  switch (platform.flags & EF_RISCV_FLOAT_ABI) {
    case EF_RISCV_FLOAT_ABI_SOFT:
      return "software floating point";
    case EF_RISCV_FLOAT_ABI_SINGLE:
      return "single-precision hardware floating point";
    case EF_RISCV_FLOAT_ABI_DOUBLE:
      return "double-precision hardware floating point";
    default:
      return "quadruple-precision hardware floating point";
  }
}

std::string armFloatingPoint(const Platform& platform) {
  if ((platform.flags & EF_ARM_ABI_FLOAT_HARD) != 0) return "hardware floating point";
  if ((platform.flags & EF_ARM_ABI_FLOAT_SOFT) != 0) return "software floating point";
  return "floating point not stated";
}

bool isStated(int mips_float) {
  return mips_float != kFloatNotStated && mips_float != Val_GNU_MIPS_ABI_FP_ANY;
}

bool is64(int mips_float) {
  return mips_float == Val_GNU_MIPS_ABI_FP_64 || mips_float == Val_GNU_MIPS_ABI_FP_64A;
}

// The convention "xx" works with both widths of the registers.
bool fitsXx(int mips_float) {
  return is64(mips_float) || mips_float == Val_GNU_MIPS_ABI_FP_DOUBLE;
}

bool mipsFloatsFit(int one, int other) {
  if (!isStated(one) || !isStated(other) || one == other) return true;
  if (one == Val_GNU_MIPS_ABI_FP_XX) return fitsXx(other);
  if (other == Val_GNU_MIPS_ABI_FP_XX) return fitsXx(one);
  return is64(one) && is64(other);
}

bool armFloatsFit(const Platform& one, const Platform& other) {
  constexpr std::uint32_t kFloat = EF_ARM_ABI_FLOAT_HARD | EF_ARM_ABI_FLOAT_SOFT;
  const std::uint32_t a = one.flags & kFloat, b = other.flags & kFloat;
  return a == 0 || b == 0 || a == b;
}

}  // namespace

int mipsFloat(const ElfImage& image) {
  constexpr std::uint64_t kFloatByte = 7, kFloatTag = 4;
  const GElf_Phdr* segment = image.findSegment(PT_MIPS_ABIFLAGS);
  if (segment == nullptr) {
    const std::optional<std::uint64_t> stated = gnuAttribute(image, kFloatTag);
    return stated ? static_cast<int>(std::min<std::uint64_t>(*stated, Val_GNU_MIPS_ABI_FP_MAX + 1))
                  : kFloatNotStated;
  }
  return static_cast<unsigned char>(image.bytes(segment->p_offset, kFloatByte + 1)[kFloatByte]);
}

std::string floatingPoint(const Platform& platform) {
  if (platform.machine == EM_MIPS) return mipsFloatingPoint(platform);
  if (platform.machine == EM_ARM) return armFloatingPoint(platform);
  if (platform.machine == EM_RISCV) return riscvFloatingPoint(platform);
  return "";
}

bool floatingPointFits(const Platform& one, const Platform& other) {
  if (one.machine == EM_ARM) return armFloatsFit(one, other);
  if (one.machine == EM_RISCV) return riscvFloatingPoint(one) == riscvFloatingPoint(other);
  if (one.machine != EM_MIPS) return true;
  return mipsFloatsFit(one.mips_float, other.mips_float) &&
         (one.flags & EF_MIPS_NAN2008) == (other.flags & EF_MIPS_NAN2008);
}

}  // namespace contextctl
