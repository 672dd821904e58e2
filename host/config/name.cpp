// SPDX-License-Identifier: MIT
#include "host/config/name.h"

#include <algorithm>

namespace host {
namespace {

std::size_t parentNameLength(std::string_view name) {
  if (name.size() < 2) return 0;
  const auto dot = name.rfind('.', name.size() - 2);
  return dot == std::string_view::npos ? 0 : dot + 1;
}

bool isNameCharacter(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return byte > 0x20 && byte != 0x7f && character != '.';
}

}  // namespace

bool isComponent(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), isNameCharacter);
}

bool isObjectName(std::string_view text) {
  if (text.empty() || text.back() != '.') return false;
  char previous = '.';
  for (const char character : text) {
    if (character == '.' ? previous == '.' : !isNameCharacter(character)) return false;
    previous = character;
  }
  return true;
}

std::string_view parentName(std::string_view name) {
  return name.substr(0, parentNameLength(name));
}

}  // namespace host
