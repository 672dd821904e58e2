// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_INSPECT_MANGLED_NAME_H
#define CPP2C_CONTEXTCTL_INSPECT_MANGLED_NAME_H

#include <string>
#include <string_view>

namespace contextctl {

// What the mangled name of a C++ symbol refers to. It is scanned in linear time, not demangled: the demangled
// form of a hostile name may be exponentially longer.
struct MangledName {
  bool new_string = false;  // the std::string of GCC 5 and later
  bool old_string = false;
  int references = 0;  // to types and template arguments of the same name
  int expansions = 0;  // of parameter packs
};

// Nothing is found in a name that is not mangled.
MangledName scanMangledName(std::string_view symbol);

// The C++ name of a symbol; the symbol itself if it is not a mangled name, or if its C++ name could be too
// long.
std::string demangle(const std::string& symbol);

}  // namespace contextctl

#endif
