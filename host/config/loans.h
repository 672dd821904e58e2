// SPDX-License-Identifier: MIT
// The objects that the configuration service lends to its callers: nodes and iterators.
#ifndef CPP2C_HOST_CONFIG_LOANS_H
#define CPP2C_HOST_CONFIG_LOANS_H

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>

#include "binding/context.h"
#include "host/config/tree.h"

namespace host {

class ConfigService;

// One leaf. Its value is read at the first access and then kept, so that length and value match and a data
// provider is called at most once.
class ConfigNode final : public ICfmNode {
 public:
  ConfigNode(ConfigService& config, const Tree::Place& place, std::string fullname)
      : config_(config), place_(place), fullname_(std::move(fullname)) {}

  std::string getType() override { return place_.leaf->type->name; }
  std::string getValue() override { return value(); }
  unsigned int getLength() override { return static_cast<unsigned int>(value().size()); }

  int reserved5() override { return 0; }

 private:
  const std::string& value();

  ConfigService& config_;
  const Tree::Place place_;
  const std::string fullname_;
  std::optional<std::string> value_;
};

// Iterates over the names of the instances that existed when the iterator was created.
class InstanceIterator final : public ICfmIterator {
 public:
  explicit InstanceIterator(std::shared_ptr<const InstanceNames> names) : names_(std::move(names)) {}

  int next() override {
    if (current_ < names_->size()) current_++;
    return current_ < names_->size() ? 1 : 0;
  }
  std::string name() override { return current_ < names_->size() ? (*names_)[current_] : std::string(); }

  int reserved4() override { return 0; }
  int reserved5() override { return 0; }

 private:
  const std::shared_ptr<const InstanceNames> names_;
  std::size_t current_ = 0;
};

// Objects on loan to callers. Objects that are not released are freed with the list.
template <typename Object>
class Loans {
 public:
  template <typename... Arguments>
  Object* lend(Arguments&&... arguments) {
    if (!first_) return &first_.emplace(std::forward<Arguments>(arguments)...);
    auto object = std::make_unique<Object>(std::forward<Arguments>(arguments)...);
    Object* loan = object.get();
    others_.emplace(loan, std::move(object));
    return loan;
  }

  // Frees the object. Returns false if it is not on loan; the pointer may be invalid.
  template <typename Interface>
  bool release(const Interface* object) {
    if (!first_ || object != &*first_) return others_.erase(object) == 1;
    first_.reset();
    return true;
  }

 private:
  std::optional<Object> first_;  // in place: most callers return an object before they borrow the next
  std::unordered_map<const void*, std::unique_ptr<Object>> others_;
};

}  // namespace host

#endif
