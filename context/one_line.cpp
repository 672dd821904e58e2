// SPDX-License-Identifier: MIT
#include "context/one_line.h"

namespace {

// Bytes from 0x80 up are left alone: they are UTF-8.
bool isControl(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return byte < 0x20 || byte == 0x7f;
}

std::string spelledOut(char character) {
  static constexpr char kDigits[] = "0123456789abcdef";
  switch (character) {
    case '\n':
      return "\\n";
    case '\r':
      return "\\r";
    case '\t':
      return "\\t";
    default:
      const auto byte = static_cast<unsigned char>(character);
      return {'\\', 'x', kDigits[byte / 16], kDigits[byte % 16]};
  }
}

}  // namespace

std::string oneLine(std::string_view text) {
  while (!text.empty() && text.back() == '\n') text.remove_suffix(1);

  std::string line;
  line.reserve(text.size());
  for (const char character : text) {
    if (isControl(character)) {
      line += spelledOut(character);
    } else {
      line += character;
    }
  }
  return line;
}
