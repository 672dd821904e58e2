// SPDX-License-Identifier: MIT
#include "contextctl/inspect/symbol_names.h"

#include <cxxabi.h>

#include <cstdlib>
#include <memory>

#include "contextctl/inspect/dynamic_section.h"
#include "contextctl/inspect/elf_image.h"
#include "util/text.h"

namespace contextctl {
namespace {

void add(const GElf_Sym& symbol, const std::string& name, FunctionNames& names) {
  const bool is_defined = symbol.st_shndx != SHN_UNDEF && GELF_ST_TYPE(symbol.st_info) == STT_FUNC;
  if (is_defined) names[symbol.st_value].insert(demangle(name));
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

std::string demangle(const std::string& symbol) {
  struct Free {
    void operator()(char* text) const { std::free(text); }
  };
  // Other names would be parsed as types: "i" is int, but also the name of a C function.
  if (!util::startsWith(symbol, "_Z")) return symbol;
  int status = 0;
  const std::unique_ptr<char, Free> name(abi::__cxa_demangle(symbol.c_str(), nullptr, nullptr, &status));
  return name == nullptr ? symbol : name.get();
}

FunctionNames readFunctionNames(const ElfImage& image) {
  FunctionNames names;
  addDynamicSymbols(image, names);
  addDebugSymbols(image, names);
  return names;
}

}  // namespace contextctl
