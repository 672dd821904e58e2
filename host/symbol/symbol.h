// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_SYMBOL_SYMBOL_H
#define CPP2C_HOST_SYMBOL_SYMBOL_H

#include <string>

namespace host {

// A location in the program's code.
struct Symbol {
  std::string name;      // of the function, or its address if it has no name
  std::string location;  // "file.c:12"; without debug information the library or program; or empty
  std::string library;   // path of the library or program
};

// Finds static functions too. The first lookup of an address is slow. Its result is cached until another
// library is loaded at the address.
const Symbol& symbolAt(const void* address);

// The path of the library or program that is loaded at the address, or empty. Fast.
std::string libraryAt(const void* address);

// "function (location)", or "function" without a location.
std::string textOf(const Symbol& symbol);

// The name of a type in C++ source, from its mangled name as typeid() gives it.
std::string typeName(const char* mangled);

}  // namespace host

#endif
