// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXT_ONE_LINE_H
#define CPP2C_CONTEXT_ONE_LINE_H

#include <string>
#include <string_view>

// The text as one line that a terminal takes no orders from: line feeds at its end are dropped, every other
// control character is spelled out, as "\n" or "\x1b".
std::string oneLine(std::string_view text);

#endif
