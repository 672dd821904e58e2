// SPDX-License-Identifier: MIT
// Names in the configuration tree: components separated by ".". The name of an object or an instance ends
// with ".", that of a leaf does not.
#ifndef CPP2C_HOST_CONFIG_NAME_H
#define CPP2C_HOST_CONFIG_NAME_H

#include <string>

namespace host {

// Whether the text can be one component: not empty, no ".", no white space, no control character.
bool isComponent(const std::string& text);

// Whether the text is components, each followed by ".".
bool isObjectName(const std::string& text);

// Everything up to the last "." that has a component behind it: "A." for "A.B" and for "A.B."; else "".
std::string parentName(const std::string& name);

}  // namespace host

#endif
