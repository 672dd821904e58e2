// SPDX-License-Identifier: MIT
#include "contextctl/inspect/platform.h"

#include <elf.h>

#include "contextctl/inspect/elf_image.h"
#include "contextctl/inspect/floating_point.h"

namespace contextctl {
namespace {

struct Name {
  std::uint32_t number;
  const char* text;
};

constexpr Name kMachines[] = {
    {EM_386, "x86"},       {EM_X86_64, "x86-64"}, {EM_MIPS, "MIPS"},       {EM_ARM, "ARM"},
    {EM_AARCH64, "ARM64"}, {EM_PPC, "PowerPC"},   {EM_PPC64, "PowerPC64"}, {EM_RISCV, "RISC-V"},
    {EM_SH, "SuperH"},     {EM_S390, "S/390"},    {EM_SPARC, "SPARC"},     {EM_68K, "m68k"},
};

constexpr Name kMipsSets[] = {
    {EF_MIPS_ARCH_1, "mips1"},   {EF_MIPS_ARCH_2, "mips2"},       {EF_MIPS_ARCH_3, "mips3"},
    {EF_MIPS_ARCH_4, "mips4"},   {EF_MIPS_ARCH_5, "mips5"},       {EF_MIPS_ARCH_32, "mips32"},
    {EF_MIPS_ARCH_64, "mips64"}, {EF_MIPS_ARCH_32R2, "mips32r2"}, {EF_MIPS_ARCH_64R2, "mips64r2"},
    {0x90000000, "mips32r6"},    {0xa0000000, "mips64r6"},
};

template <size_t kCount>
std::string nameOf(std::uint32_t number, const Name (&names)[kCount], const std::string& what) {
  for (const Name& name : names)
    if (name.number == number) return name.text;
  return what + ' ' + std::to_string(number);
}

std::string mipsConvention(const Platform& platform) {
  constexpr std::uint32_t kConvention = 0xf000, kO32 = 0x1000;
  if ((platform.flags & EF_MIPS_ABI2) != 0) return "n32";
  if ((platform.flags & kConvention) == kO32) return "o32";
  return platform.word_size == 64 ? "n64" : "no named calling convention";
}

std::string mipsSet(const Platform& platform) {
  return nameOf(platform.flags & EF_MIPS_ARCH, kMipsSets, "instruction set");
}

std::string wordSize(const Platform& platform) {
  return std::to_string(platform.word_size) + "-bit";
}

std::string byteOrder(const Platform& platform) {
  return platform.big_endian ? "big-endian" : "little-endian";
}

std::string machine(const Platform& platform) {
  return nameOf(static_cast<std::uint32_t>(platform.machine), kMachines, "machine");
}

// Release 6 removed old instructions: its code and older code do not run on the same processor.
std::string mipsRelease(const Platform& platform) {
  return (platform.flags & EF_MIPS_ARCH) >= 0x90000000 ? "release 6" : "a release before 6";
}

}  // namespace

Platform platformOf(const ElfImage& image) {
  const GElf_Ehdr& header = image.header();
  Platform platform;
  platform.word_size = header.e_ident[EI_CLASS] == ELFCLASS64 ? 64 : 32;
  platform.big_endian = header.e_ident[EI_DATA] == ELFDATA2MSB;
  platform.machine = header.e_machine;
  platform.flags = header.e_flags;
  platform.mips_float = header.e_machine == EM_MIPS ? mipsFloat(image) : kFloatNotStated;
  return platform;
}

std::string describe(const Platform& platform) {
  std::string text = wordSize(platform) + ' ' + byteOrder(platform) + ' ' + machine(platform);
  if (platform.machine == EM_MIPS) text += ", " + mipsConvention(platform) + ", " + mipsSet(platform);
  const std::string floating_point = floatingPoint(platform);
  return floating_point.empty() ? text : text + ", " + floating_point;
}

bool sameLoader(const Platform& one, const Platform& other) {
  return one.word_size == other.word_size && one.big_endian == other.big_endian &&
         one.machine == other.machine;
}

std::vector<std::string> differences(const Platform& theirs, const Platform& ours) {
  std::vector<std::string> found;
  const auto compare = [&](const std::string& their, const std::string& our) {
    if (their != our) found.push_back(their + ", not " + our);
  };
  compare(wordSize(theirs), wordSize(ours));
  compare(byteOrder(theirs), byteOrder(ours));
  compare(machine(theirs), machine(ours));
  if (!found.empty()) return found;
  if (theirs.machine == EM_MIPS) {
    compare(mipsConvention(theirs), mipsConvention(ours));
    compare(mipsRelease(theirs), mipsRelease(ours));
  }
  if (!floatingPointFits(theirs, ours)) compare(floatingPoint(theirs), floatingPoint(ours));
  return found;
}

}  // namespace contextctl
