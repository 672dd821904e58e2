// SPDX-License-Identifier: MIT
#include "contextctl/inspect/function_names.h"

#include "contextctl/inspect/demangle.h"
#include "contextctl/inspect/dynamic_section.h"
#include "contextctl/inspect/elf_image.h"

namespace contextctl {
namespace {

void add(const GElf_Sym& symbol, const std::string& name, FunctionNames& names) {
  const bool is_here = symbol.st_shndx != SHN_UNDEF && GELF_ST_TYPE(symbol.st_info) == STT_FUNC;
  if (is_here) names[symbol.st_value].insert(demangle(name));
}

void addDynamicSymbols(const ElfImage& image, FunctionNames& names) {
  const DynamicSection dynamic(image);
  for (const GElf_Sym& symbol : dynamic.symbols()) add(symbol, dynamic.name(symbol.st_name), names);
}

void addDebugSymbols(const ElfImage& image, FunctionNames& names) {
  Elf_Scn* section = nullptr;
  while ((section = elf_nextscn(image.elf(), section)) != nullptr) {
    GElf_Shdr header;
    if (gelf_getshdr(section, &header) == nullptr || header.sh_type != SHT_SYMTAB) continue;
    Elf_Data* data = elf_getdata(section, nullptr);
    GElf_Sym symbol;
    for (int i = 0; gelf_getsym(data, i, &symbol) != nullptr; i++) {
      const char* name = elf_strptr(image.elf(), header.sh_link, symbol.st_name);
      if (name != nullptr) add(symbol, name, names);
    }
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
