// SPDX-License-Identifier: MIT
// Whether a text is a value of a type.
#ifndef CPP2C_HOST_CONFIG_VALUE_CHECK_H
#define CPP2C_HOST_CONFIG_VALUE_CHECK_H

#include <string>

bool isInt(const std::string& text);
bool isUint(const std::string& text);  // also the signed form of a 32-bit word, as a C program writes it
bool isBool(const std::string& text);
bool isText(const std::string& text);

// The empty text passes for each of these: no address, no data, no time.
bool isIpAddress(const std::string& text);
bool isMacAddress(const std::string& text);
bool isBase64(const std::string& text);
bool isDateTime(const std::string& text);

#endif
