// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_PRINTABLE_H
#define CPP2C_CONTEXTCTL_PRINTABLE_H

#include <string>
#include <string_view>

// The UTF-8 text with every control character spelled out, as "\n" or "\x1b", so that no value can move the
// cursor or give the terminal orders.
std::string printable(std::string_view text);

#endif
