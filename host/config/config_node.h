// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_CONFIG_CONFIG_NODE_H
#define CPP2C_HOST_CONFIG_CONFIG_NODE_H

#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "binding/context.h"

// One leaf as it was when it was first looked at: its length and its value belong together, and a computed
// value is asked for once, and only if somebody wants it.
class ConfigNode final : public ICfmNode {
 public:
  ConfigNode(std::string type, std::function<std::string()> read)
      : type_(std::move(type)), read_(std::move(read)) {}

  std::string getType() override { return type_; }
  std::string getValue() override { return value(); }
  unsigned int getLength() override { return static_cast<unsigned int>(value().size()); }

  int reserved5() override { return 0; }

 private:
  const std::string& value() {
    if (!value_) value_ = read_();
    return *value_;
  }

  const std::string type_;
  const std::function<std::string()> read_;
  std::optional<std::string> value_;
};

#endif
