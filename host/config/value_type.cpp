// SPDX-License-Identifier: MIT
#include "host/config/value_type.h"

#include <arpa/inet.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <iterator>
#include <limits>
#include <string_view>

namespace host {
namespace {

constexpr std::int64_t kMinInt = std::numeric_limits<std::int32_t>::min();
constexpr std::int64_t kMaxInt = std::numeric_limits<std::int32_t>::max();
constexpr std::int64_t kMaxUint = std::numeric_limits<std::uint32_t>::max();

bool isNumberIn(std::int64_t min, std::int64_t max, const std::string& text) {
  std::int64_t number = 0;
  const char* end = text.data() + text.size();
  const auto parsed = std::from_chars(text.data(), end, number);
  return parsed.ec == std::errc() && parsed.ptr == end && number >= min && number <= max;
}

bool isDigit(char character) {
  return character >= '0' && character <= '9';
}

bool isHexDigit(char character) {
  return isDigit(character) || (character >= 'a' && character <= 'f') ||
         (character >= 'A' && character <= 'F');
}

bool isBase64Digit(char character) {
  return isDigit(character) || (character >= 'a' && character <= 'z') ||
         (character >= 'A' && character <= 'Z') || character == '+' || character == '/';
}

// In `pattern`, '0' matches a decimal digit, 'f' a hexadecimal digit, and any other character itself.
bool matches(std::string_view text, std::string_view pattern) {
  return std::equal(text.begin(), text.end(), pattern.begin(), pattern.end(),
                    [](char character, char expected) {
                      if (expected == '0') return isDigit(character);
                      if (expected == 'f') return isHexDigit(character);
                      return character == expected;
                    });
}

int numberAt(std::string_view text, std::size_t position, std::size_t digits) {
  int number = 0;
  for (const char digit : text.substr(position, digits)) number = number * 10 + (digit - '0');
  return number;
}

int daysIn(int month, int year) {
  static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  return month == 2 && leap ? 29 : kDays[month - 1];
}

bool isDate(int year, int month, int day) {
  return month >= 1 && month <= 12 && day >= 1 && day <= daysIn(month, year);
}

bool isTime(int hour, int minute, int second) {
  return hour < 24 && minute < 60 && second < 60;
}

bool isInt(const std::string& text) {
  return isNumberIn(kMinInt, kMaxInt, text);
}

// Also accepts a negative number: C programs write a 32-bit word in its signed form.
bool isUint(const std::string& text) {
  return isNumberIn(kMinInt, kMaxUint, text);
}

bool isBool(const std::string& text) {
  return text == "true" || text == "false" || text == "1" || text == "0";
}

bool isText(const std::string& /*text*/) {
  return true;
}

// All types below accept the empty string: no address, no data, no time.
bool isIpAddress(const std::string& text) {
  in6_addr address;
  return text.empty() || inet_pton(AF_INET, text.c_str(), &address) == 1 ||
         inet_pton(AF_INET6, text.c_str(), &address) == 1;
}

bool isMacAddress(const std::string& text) {
  return text.empty() || matches(text, "ff:ff:ff:ff:ff:ff");
}

bool isBase64(const std::string& text) {
  std::string_view digits = text;
  for (int padding = 0; padding < 2 && !digits.empty() && digits.back() == '='; padding++) {
    digits.remove_suffix(1);
  }
  return text.size() % 4 == 0 && std::all_of(digits.begin(), digits.end(), isBase64Digit);
}

bool isDateTime(const std::string& text) {
  if (text.empty()) return true;
  if (!matches(text, "0000-00-00T00:00:00") && !matches(text, "0000-00-00T00:00:00Z")) return false;
  return isDate(numberAt(text, 0, 4), numberAt(text, 5, 2), numberAt(text, 8, 2)) &&
         isTime(numberAt(text, 11, 2), numberAt(text, 14, 2), numberAt(text, 17, 2));
}

constexpr ValueType kTypes[] = {
    {"int", "0", isInt, false}, {"uint", "0", isUint, false},       {"bool", "false", isBool, false},
    {"str", "", isText, false}, {"ipaddr", "", isIpAddress, false}, {"macaddr", "", isMacAddress, false},
    {"pwd", "", isText, true},  {"base64", "", isBase64, false},    {"datetime", "", isDateTime, false},
};

}  // namespace

const ValueType* findValueType(const std::string& name) {
  const auto* type =
      std::find_if(std::begin(kTypes), std::end(kTypes), [&](const ValueType& t) { return name == t.name; });
  return type != std::end(kTypes) ? type : nullptr;
}

bool fits(const ValueType& type, const std::string& text) {
  return text.find('\0') == std::string::npos && type.accepts(text);
}

std::string valueTypeNames() {
  std::string names;
  for (const ValueType& type : kTypes) names += (names.empty() ? "" : ", ") + std::string(type.name);
  return names;
}

}  // namespace host
