// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXT_IN_QUOTES_H
#define CPP2C_CONTEXT_IN_QUOTES_H

#include <string>

// A name or a value as messages show it.
inline std::string inQuotes(const std::string& text) {
  return '"' + text + '"';
}

#endif
