// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_INSPECT_LIBRARY_H
#define CPP2C_CONTEXTCTL_INSPECT_LIBRARY_H

#include <string>
#include <vector>

#include "contextctl/inspect/platform.h"

namespace contextctl {

class ElfImage;

// One entry of the dynamic symbol table.
struct DynamicSymbol {
  std::string name;
  bool defined = false;
  bool function = false;
  bool unique = false;  // the loader keeps a library with such a symbol until the process ends
};

// The information about a shared library that the loader reads from its file.
struct Library {
  std::string path;
  Platform platform;
  std::string soname;               // empty: none
  std::vector<std::string> needed;  // names of libraries
  std::string rpath;                // colon-separated, as in the file
  std::string runpath;              // colon-separated
  std::vector<DynamicSymbol> symbols;
  bool no_delete = false;  // marked as never to be unloaded
  bool executable_stack = false;
};

// Throws Failure if the file cannot be read or is not a shared library.
Library readLibrary(const std::string& path);
Library readLibrary(const ElfImage& image);

}  // namespace contextctl

#endif
