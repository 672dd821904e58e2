// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_SYMBOL_SYMBOL_H
#define CPP2C_HOST_SYMBOL_SYMBOL_H

#include <string>

namespace host {

// What is known about a place in the program's code.
struct Symbol {
  std::string name;      // of the function; of one without a name, its address
  std::string location;  // "file.c:12"; the library or program without debug information; or empty
  std::string library;   // path of the library or program
};

// Names also static functions. The first answer for an address is slow, and kept until another library has
// taken the place of this one.
const Symbol& symbolAt(const void* address);

// Path of the library or program that the address is in now, or empty. Quick.
std::string libraryAt(const void* address);

// "function (location)", or what there is of it.
std::string textOf(const Symbol& symbol);

// The name of a type as it is written in a program, from the one that typeid() gives.
std::string typeName(const char* mangled);

}  // namespace host

#endif
