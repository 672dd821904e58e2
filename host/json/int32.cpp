// SPDX-License-Identifier: MIT
#include "host/json/int32.h"

#include <limits>
#include <nlohmann/json.hpp>

std::optional<std::int32_t> int32In(const nlohmann::json& value) {
  using Limits = std::numeric_limits<std::int32_t>;
  const bool fits = value.is_number_unsigned()
                        ? value.get<std::uint64_t>() <= std::uint64_t{Limits::max()}
                        : value.is_number_integer() && value.get<std::int64_t>() >= Limits::min();
  if (!fits) return std::nullopt;
  return value.get<std::int32_t>();
}
