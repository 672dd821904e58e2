// SPDX-License-Identifier: MIT
// A string in the layout from before GCC 5.
#undef _GLIBCXX_USE_CXX11_ABI
#define _GLIBCXX_USE_CXX11_ABI 0
#include <string>

__attribute__((visibility("default"))) void takeString(std::string text);

void takeString(std::string) {}
