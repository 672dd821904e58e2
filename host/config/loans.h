// SPDX-License-Identifier: MIT
// The objects that the configuration service lends to its callers: nodes and iterators.
#ifndef CPP2C_HOST_CONFIG_LOANS_H
#define CPP2C_HOST_CONFIG_LOANS_H

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "binding/context.h"

namespace host {

// One leaf. Its value is read at the first access and then kept, so that length and value match and a data
// provider is called at most once.
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

// Iterates over the names of the instances that existed when the iterator was created.
class InstanceIterator final : public ICfmIterator {
 public:
  explicit InstanceIterator(std::vector<std::string> names) : names_(std::move(names)) {}

  int next() override {
    if (current_ < names_.size()) current_++;
    return current_ < names_.size() ? 1 : 0;
  }
  std::string name() override { return current_ < names_.size() ? names_[current_] : std::string(); }

  int reserved4() override { return 0; }
  int reserved5() override { return 0; }

 private:
  const std::vector<std::string> names_;
  std::vector<std::string>::size_type current_ = 0;
};

// Objects on loan to callers. Objects that are not released are freed with the list.
template <typename Object>
class Loans {
 public:
  Object* lend(std::unique_ptr<Object> object) {
    Object* loan = object.get();
    objects_.emplace(loan, std::move(object));
    return loan;
  }

  // Frees the object. Returns false if it is not on loan; the pointer may be invalid.
  bool release(const Object* object) { return objects_.erase(object) == 1; }

 private:
  std::unordered_map<const Object*, std::unique_ptr<Object>> objects_;
};

}  // namespace host

#endif
