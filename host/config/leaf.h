// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_CONFIG_LEAF_H
#define CPP2C_HOST_CONFIG_LEAF_H

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/config/value_type.h"

namespace host {

// The declaration of a leaf, which every instance of its object has.
struct Leaf {
  std::string name;
  const ValueType* type;
  std::string default_value;
  bool computed = false;     // read from the object's data provider
  std::size_t position = 0;  // among the leaves of the object, and of its value among those of an instance
};

// The leaves of one object, by name.
class Leaves {
 public:
  Leaves() = default;
  explicit Leaves(std::vector<Leaf> leaves);  // with unique names, in any order
  Leaves(Leaves&&) = default;
  Leaves& operator=(Leaves&&) = default;

  const Leaf* find(std::string_view name) const;  // null if not found

  // In the order of their names.
  std::vector<Leaf>::const_iterator begin() const { return in_order_.begin(); }
  std::vector<Leaf>::const_iterator end() const { return in_order_.end(); }
  std::vector<Leaf>::const_iterator lowerBound(std::string_view name) const;
  bool empty() const { return in_order_.empty(); }

  std::vector<std::string> defaultValues() const;  // by position

 private:
  std::vector<Leaf> in_order_;
  std::unordered_map<std::string_view, const Leaf*> by_name_;  // the keys are in in_order_
};

}  // namespace host

#endif
