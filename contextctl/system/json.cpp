// SPDX-License-Identifier: MIT
#include "contextctl/system/json.h"

namespace contextctl {
namespace {

constexpr int kDeepest = 64;
constexpr std::size_t kMostValues = 2'000'000;

[[noreturn]] void failMoreThan(std::size_t limit, const std::string& what) {
  throw JsonTooLarge("has more than " + std::to_string(limit) + ' ' + what);
}

}  // namespace

void JsonLimits::count(int depth, nlohmann::json::parse_event_t event) {
  using Event = nlohmann::json::parse_event_t;
  if (depth > kDeepest)
    throw JsonTooLarge("is nested more than " + std::to_string(kDeepest) + " levels deep");
  if (event == Event::key) {
    if (++members_[static_cast<std::size_t>(depth)] > most_members_)
      failMoreThan(most_members_, "members in one object");
    return;
  }
  if (event == Event::object_end || event == Event::array_end) return;
  if (++values_ > kMostValues) failMoreThan(kMostValues, "values");
  members_.resize(static_cast<std::size_t>(depth) + 1);
  members_.push_back(0);
}

// Control characters occur in strings only. U+0080 to U+009F are two bytes in UTF-8.
std::string printableJson(const std::string& json) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  text.reserve(json.size());
  for (std::size_t i = 0; i < json.size(); i++) {
    const auto code = static_cast<unsigned char>(json[i]);
    const auto next = static_cast<unsigned char>(i + 1 < json.size() ? json[i + 1] : 0);
    const bool is_wide = code == 0xc2 && next >= 0x80 && next <= 0x9f;
    if (is_wide || code == 0x7f) {
      const unsigned char control = is_wide ? next : code;
      text += {'\\', 'u', '0', '0', kDigits[control / 16], kDigits[control % 16]};
      i += is_wide ? 1 : 0;
    } else {
      text += json[i];
    }
  }
  return text;
}

}  // namespace contextctl
