// SPDX-License-Identifier: MIT
#include "host/symbol/symbol.h"

#include <cxxabi.h>
#include <dlfcn.h>
#include <elfutils/libdwfl.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>

namespace host {
namespace {

struct EndDwfl {
  void operator()(Dwfl* dwfl) const { dwfl_end(dwfl); }
};

std::string baseName(const std::string& path) {
  return path.substr(path.rfind('/') + 1);
}

std::string hexadecimal(const void* address) {
  char text[2 + 2 * sizeof address + 1];
  std::snprintf(text, sizeof text, "%p", address);
  return text;
}

std::string functionName(const char* symbol) {
  // Other names must not be demangled: "i" may be a C function, but demangles to the type int.
  return std::strncmp(symbol, "_Z", 2) == 0 ? typeName(symbol) : symbol;
}

// Asks the dynamic loader, which knows the library and the names of exported functions.
Symbol loaderSymbol(const void* address) {
  Symbol symbol;
  Dl_info info{};
  if (dladdr(address, &info) == 0) return symbol;
  if (info.dli_fname != nullptr) symbol.library = info.dli_fname;
  if (info.dli_sname != nullptr) symbol.name = functionName(info.dli_sname);
  return symbol;
}

// Opens this process with the libraries loaded now. They change, so each lookup opens it again.
std::unique_ptr<Dwfl, EndDwfl> openProcess() {
  // Reads local files only: libdw's default lookup may query a server.
  static char* no_path = nullptr;
  static const Dwfl_Callbacks callbacks = {dwfl_linux_proc_find_elf, dwfl_build_id_find_debuginfo, nullptr,
                                           &no_path};
  std::unique_ptr<Dwfl, EndDwfl> dwfl(dwfl_begin(&callbacks));
  if (dwfl == nullptr || dwfl_linux_proc_report(dwfl.get(), getpid()) != 0 ||
      dwfl_report_end(dwfl.get(), nullptr, nullptr) != 0) {
    return nullptr;
  }
  return dwfl;
}

// Searches all compilation units: not every compiler writes an index of them.
std::string lineAt(Dwfl_Module* module, Dwarf_Addr address) {
  Dwarf_Addr bias = 0;
  for (Dwarf_Die* unit = nullptr; (unit = dwfl_module_nextcu(module, unit, &bias)) != nullptr;) {
    if (dwarf_haspc(unit, address - bias) != 1) continue;
    Dwarf_Line* line = dwarf_getsrc_die(unit, address - bias);
    const char* file = dwarf_linesrc(line, nullptr, nullptr);
    int number = 0;
    if (file != nullptr && dwarf_lineno(line, &number) == 0)
      return baseName(file) + ':' + std::to_string(number);
  }
  return {};
}

// Adds the name from the symbol table and the location from the debug information.
void addDebugSymbol(const void* address, Symbol& symbol) {
  const auto dwfl = openProcess();
  if (dwfl == nullptr) return;
  const auto place = static_cast<Dwarf_Addr>(reinterpret_cast<std::uintptr_t>(address));
  Dwfl_Module* module = dwfl_addrmodule(dwfl.get(), place);
  if (module == nullptr) return;
  if (const char* name = dwfl_module_addrname(module, place)) symbol.name = functionName(name);
  symbol.location = lineAt(module, place);
}

Symbol findSymbol(const void* address) {
  Symbol symbol = loaderSymbol(address);
  addDebugSymbol(address, symbol);
  if (symbol.name.empty()) symbol.name = hexadecimal(address);
  if (symbol.location.empty()) symbol.location = baseName(symbol.library);
  return symbol;
}

}  // namespace

const Symbol& symbolAt(const void* address) {
  static std::map<const void*, Symbol> known;
  const std::string library = libraryAt(address);
  const auto symbol = known.find(address);
  if (symbol != known.end() && (library.empty() || library == symbol->second.library)) return symbol->second;
  return known.insert_or_assign(address, findSymbol(address)).first->second;
}

std::string libraryAt(const void* address) {
  return loaderSymbol(address).library;
}

std::string textOf(const Symbol& symbol) {
  return symbol.location.empty() ? symbol.name : symbol.name + " (" + symbol.location + ')';
}

std::string typeName(const char* mangled) {
  int status = 0;
  const std::unique_ptr<char, decltype(&std::free)> text(
      abi::__cxa_demangle(mangled, nullptr, nullptr, &status), std::free);
  return text != nullptr ? text.get() : mangled;
}

}  // namespace host
