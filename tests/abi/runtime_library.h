// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_ABI_RUNTIME_LIBRARY_H
#define CPP2C_TESTS_ABI_RUNTIME_LIBRARY_H

#include <fstream>
#include <string>

#include "include_c"
#include "tests/support/opened_library.h"

// The library under test, opened at run time as a program does that is not linked with it. The macro in
// capitals is its path.
class RuntimeLibrary : public OpenedLibrary {
 public:
  RuntimeLibrary() : OpenedLibrary(CPP2C_LIBRARY) {}

  // Whether any part of the library is in the process.
  static bool isMapped() {
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
      if (line.find("libcpp2c.so") != std::string::npos) return true;
    }
    return false;
  }
};

// The function `name` of `library`, with the type that the header gives it.
#define CPP2C_FUNCTION(library, name) (*(library).find<decltype(name)>(#name))

#endif
