// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_LEAVES_LEAF_H
#define CPP2C_CONTEXTCTL_LEAVES_LEAF_H

#include <optional>
#include <string>
#include <vector>

#include "contextctl/connection/message.h"

namespace contextctl {

class Connection;

// A leaf of the configuration tree.
struct Leaf {
  std::string name;  // full name
  std::string type;
  std::optional<std::string> value;  // nullopt: a hidden password
  bool computed = false;
};

Leaf leafOf(const Record& record);

// Selects leaves by their full name or its prefix; `reveal` asks for the values of passwords.
Query leafQuery(const std::string& name, bool reveal);

// The leaves whose full names begin with `prefix`, sorted by name.
std::vector<Leaf> getLeaves(const Connection& connection, const std::string& prefix, bool reveal);

// Throws Failure if the context has no instance that the leaf would belong to. The context has a value for
// every leaf that may exist: its default.
void requireInstanceOf(const Connection& connection, const std::string& name);

// Throws Failure, with a similar name if there is one: no leaf begins with the prefix.
[[noreturn]] void failNoMatch(const Connection& connection, const std::string& prefix);

// The value, or "(hidden)".
std::string valueText(const std::optional<std::string>& value);

// The type as in "uint" or "uint (computed)".
std::string typeText(const Leaf& leaf);

}  // namespace contextctl

#endif
