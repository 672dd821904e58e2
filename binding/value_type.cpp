// SPDX-License-Identifier: MIT
#include "binding/value_type.h"

#include <charconv>
#include <cstring>
#include <string_view>

#include "binding/result.h"

namespace {

struct NamedKind {
  std::string_view type;
  ValueKind kind;
};

constexpr NamedKind kTypes[] = {
    {"str", ValueKind::kText}, {"ipaddr", ValueKind::kText}, {"macaddr", ValueKind::kText},
    {"pwd", ValueKind::kText}, {"base64", ValueKind::kText}, {"datetime", ValueKind::kText},
    {"int", ValueKind::kWord}, {"uint", ValueKind::kWord},   {"bool", ValueKind::kFlag},
};

}  // namespace

ValueKind valueKind(const char* type) {
  const std::string_view wanted(type);
  for (const NamedKind& known : kTypes) {
    if (known.type == wanted) return known.kind;
  }
  return ValueKind::kUnknown;
}

std::int32_t loadWord(const void* data) {
  std::int32_t word;
  std::memcpy(&word, data, sizeof word);
  return word;
}

void storeWord(void* data, std::int32_t word) {
  std::memcpy(data, &word, sizeof word);
}

WordText::WordText(std::int32_t word) {
  std::to_chars(text_, text_ + sizeof text_ - 1, word);
}

int c_cfm_str2bool(const char* text, int* flag) {
  // Compare before storing the flag: `text` and `flag` may share the same memory.
  const std::string_view given(text);
  const bool is_true = given == "true";
  const bool is_known = is_true || given == "false";
  *flag = is_true ? 1 : 0;
  if (is_known) return C_RESULT_OK;

  refuse(C_RESULT_PARAM, text);
  return leave(C_RESULT_PARAM, "c_cfm_str2bool");
}
