// SPDX-License-Identifier: MIT
// Text as messages and terminals need it.
#ifndef CPP2C_UTIL_TEXT_H
#define CPP2C_UTIL_TEXT_H

#include <string>
#include <string_view>

namespace util {

bool startsWith(std::string_view text, std::string_view prefix);

// The text between double quotes, as messages show names and values.
std::string quoted(std::string_view text);

// The UTF-8 text with every control character escaped, as "\n" or "\x1b", so that no text can move the cursor
// or control the terminal.
std::string printable(std::string_view text);

// printable() without the line feeds at the end of the text: one line of a log.
std::string oneLine(std::string_view text);

}  // namespace util

#endif
