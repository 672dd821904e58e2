// SPDX-License-Identifier: MIT
// Names in the configuration tree: components separated by ".". The name of an object or instance ends with
// ".", the name of a leaf does not.
#ifndef CPP2C_HOST_CONFIG_NAME_H
#define CPP2C_HOST_CONFIG_NAME_H

#include <string_view>

namespace host {

// Whether the text is a valid component: not empty, no ".", no white space, no control character.
bool isComponent(std::string_view text);

// Whether the text consists of one or more components, each followed by ".".
bool isObjectName(std::string_view text);

// The text up to the last "." that a component follows: "A." for "A.B" and for "A.B."; "" if there is none.
// Part of the argument.
std::string_view parentName(std::string_view name);

}  // namespace host

#endif
