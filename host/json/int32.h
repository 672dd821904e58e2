// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_JSON_INT32_H
#define CPP2C_HOST_JSON_INT32_H

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <optional>

// The number that a value is, if it is a whole one of 32 bits.
std::optional<std::int32_t> int32In(const nlohmann::json& value);

#endif
