// SPDX-License-Identifier: MIT
#include "util/text.h"

namespace util {
namespace {

void appendEscaped(std::string& line, unsigned char code) {
  constexpr char kDigits[] = "0123456789abcdef";
  if (code == '\n') {
    line += "\\n";
  } else if (code == '\r') {
    line += "\\r";
  } else if (code == '\t') {
    line += "\\t";
  } else {
    line += {'\\', 'x', kDigits[code / 16], kDigits[code % 16]};
  }
}

// U+0080 to U+009F, which terminals also obey, are these two bytes in UTF-8.
bool isWideControl(unsigned char first, unsigned char second) {
  return first == 0xc2 && second >= 0x80 && second <= 0x9f;
}

}  // namespace

bool startsWith(std::string_view text, std::string_view prefix) {
  return text.substr(0, prefix.size()) == prefix;
}

std::string quoted(std::string_view text) {
  std::string result = "\"";
  result += text;
  result += '"';
  return result;
}

std::string printable(std::string_view text) {
  std::string line;
  line.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); i++) {
    const auto code = static_cast<unsigned char>(text[i]);
    const auto next = static_cast<unsigned char>(i + 1 < text.size() ? text[i + 1] : 0);
    if (isWideControl(code, next)) {
      appendEscaped(line, next);
      i++;
    } else if (code < 0x20 || code == 0x7f) {
      appendEscaped(line, code);
    } else {
      line += text[i];
    }
  }
  return line;
}

std::string oneLine(std::string_view text) {
  while (!text.empty() && text.back() == '\n') text.remove_suffix(1);
  return printable(text);
}

}  // namespace util
