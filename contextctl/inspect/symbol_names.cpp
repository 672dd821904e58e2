// SPDX-License-Identifier: MIT
#include "contextctl/inspect/symbol_names.h"

#include "contextctl/inspect/dynamic_section.h"
#include "contextctl/inspect/elf_image.h"

namespace contextctl {
namespace {

void add(const GElf_Sym& symbol, std::string name, FunctionNames& names) {
  const bool is_defined = symbol.st_shndx != SHN_UNDEF && GELF_ST_TYPE(symbol.st_info) == STT_FUNC;
  if (is_defined) names[symbol.st_value].insert(std::move(name));
}

void addDynamicSymbols(const ElfImage& image, FunctionNames& names) {
  const DynamicSection dynamic(image);
  for (const GElf_Sym& symbol : dynamic.symbols()) add(symbol, dynamic.name(symbol.st_name), names);
}

void addTable(const ElfImage& image, const GElf_Shdr& table, FunctionNames& names) {
  GElf_Shdr texts;
  if (gelf_getshdr(elf_getscn(image.elf(), table.sh_link), &texts) == nullptr) return;
  for (const GElf_Sym& symbol :
       image.symbols(table.sh_offset, table.sh_size / gelf_fsize(image.elf(), ELF_T_SYM, 1, EV_CURRENT)))
    add(symbol, image.text(texts.sh_offset + symbol.st_name), names);
}

// A file has at most one such table.
void addDebugSymbols(const ElfImage& image, FunctionNames& names) {
  Elf_Scn* section = nullptr;
  while ((section = elf_nextscn(image.elf(), section)) != nullptr) {
    GElf_Shdr header;
    if (gelf_getshdr(section, &header) != nullptr && header.sh_type == SHT_SYMTAB)
      return addTable(image, header, names);
  }
}

}  // namespace

FunctionNames readFunctionNames(const ElfImage& image) {
  FunctionNames names;
  addDynamicSymbols(image, names);
  addDebugSymbols(image, names);
  return names;
}

}  // namespace contextctl
