// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_CONFIG_INSTANCE_ITERATOR_H
#define CPP2C_HOST_CONFIG_INSTANCE_ITERATOR_H

#include <string>
#include <utility>
#include <vector>

#include "binding/context.h"

// A walk over the names of the instances that there were when it began.
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

#endif
