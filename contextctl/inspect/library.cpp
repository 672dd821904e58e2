// SPDX-License-Identifier: MIT
#include "contextctl/inspect/library.h"

#include <optional>

#include "contextctl/inspect/dynamic_section.h"
#include "contextctl/inspect/elf_image.h"

namespace contextctl {
namespace {

std::string textOf(const DynamicSection& dynamic, std::int64_t tag) {
  const std::optional<std::uint64_t> offset = dynamic.value(tag);
  return offset ? dynamic.name(*offset) : "";
}

bool hasFlag(const DynamicSection& dynamic, std::uint64_t flag) {
  return (dynamic.value(DT_FLAGS_1).value_or(0) & flag) != 0;
}

// Without the segment, the loader uses the old default of the machine: executable.
bool wantsExecutableStack(const ElfImage& image) {
  const GElf_Phdr* stack = image.findSegment(PT_GNU_STACK);
  return stack == nullptr || (stack->p_flags & PF_X) != 0;
}

DynamicSymbol symbolOf(const GElf_Sym& symbol, std::string name) {
  const unsigned type = GELF_ST_TYPE(symbol.st_info), binding = GELF_ST_BIND(symbol.st_info);
  const unsigned visibility = GELF_ST_VISIBILITY(symbol.st_other);
  DynamicSymbol result;
  result.name = std::move(name);
  result.defined = symbol.st_shndx != SHN_UNDEF && binding != STB_LOCAL && visibility != STV_HIDDEN;
  result.function = type == STT_FUNC || type == STT_GNU_IFUNC;
  result.unique = binding == STB_GNU_UNIQUE && symbol.st_shndx != SHN_UNDEF;
  return result;
}

std::vector<DynamicSymbol> symbolsOf(const DynamicSection& dynamic) {
  std::vector<DynamicSymbol> symbols;
  for (const GElf_Sym& symbol : dynamic.symbols()) {
    std::string name = dynamic.name(symbol.st_name);
    if (!name.empty()) symbols.push_back(symbolOf(symbol, std::move(name)));
  }
  return symbols;
}

std::vector<std::string> neededBy(const DynamicSection& dynamic, const ElfImage& image) {
  constexpr size_t kMost = 1000;
  const std::vector<std::uint64_t> offsets = dynamic.values(DT_NEEDED);
  if (offsets.size() > kMost) image.fail("it needs more than " + std::to_string(kMost) + " libraries");
  std::vector<std::string> names;
  names.reserve(offsets.size());
  for (const std::uint64_t offset : offsets) names.push_back(dynamic.name(offset));
  return names;
}

}  // namespace

Library readLibrary(const std::string& path) {
  return readLibrary(ElfImage(path));
}

Library readLibrary(const ElfImage& image) {
  if (image.header().e_type != ET_DYN) image.fail("an ELF file, but not a shared library");
  const DynamicSection dynamic(image);
  if (hasFlag(dynamic, DF_1_PIE)) image.fail("a program, not a shared library");

  Library library;
  library.path = image.path();
  library.platform = platformOf(image);
  library.soname = textOf(dynamic, DT_SONAME);
  library.needed = neededBy(dynamic, image);
  library.rpath = textOf(dynamic, DT_RPATH);
  library.runpath = textOf(dynamic, DT_RUNPATH);
  library.symbols = symbolsOf(dynamic);
  library.no_delete = hasFlag(dynamic, DF_1_NODELETE);
  library.executable_stack = wantsExecutableStack(image);
  return library;
}

}  // namespace contextctl
