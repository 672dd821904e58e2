// SPDX-License-Identifier: MIT
// A string in the current layout, independent of the configuration of the build.
#undef _GLIBCXX_USE_CXX11_ABI
#define _GLIBCXX_USE_CXX11_ABI 1
#include <string>

__attribute__((visibility("default"))) void takeString(std::string text);

void takeString(std::string) {}
