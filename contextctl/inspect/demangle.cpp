// SPDX-License-Identifier: MIT
#include "contextctl/inspect/demangle.h"

#include <cxxabi.h>

#include <cstdlib>
#include <memory>

namespace contextctl {

std::string demangle(const std::string& symbol) {
  struct Free {
    void operator()(char* text) const { std::free(text); }
  };
  // Anything else would be read as a type: "i" is int, but also a C function's name.
  if (symbol.compare(0, 2, "_Z") != 0) return symbol;
  int status = 0;
  const std::unique_ptr<char, Free> name(abi::__cxa_demangle(symbol.c_str(), nullptr, nullptr, &status));
  return name == nullptr ? symbol : name.get();
}

}  // namespace contextctl
