// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_HOST_STATE_STATEFUL_CONFIG_H
#define CPP2C_TESTS_HOST_STATE_STATEFUL_CONFIG_H

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "binding/context.h"
#include "host/config/config_service.h"
#include "host/start/configuration_file.h"
#include "host/state/state_file.h"
#include "tests/host/support/quiet_registry.h"

namespace host {

// A configuration with a state file over it, as in one life of a process.
class StatefulConfig {
 public:
  StatefulConfig(const std::string& file, std::vector<Object> objects, ILog& log,
                 const std::string& product = "service")
      : state_(file, product, log), config_(laidOver(std::move(objects)), registry_, storeInState()) {}
  StatefulConfig(const std::string& file, const char* json, ILog& log)
      : StatefulConfig(file, parseConfiguration(json, "test").objects, log) {}

  StatefulConfig(const StatefulConfig&) = delete;
  StatefulConfig& operator=(const StatefulConfig&) = delete;

  ConfigService* operator->() { return &config_; }
  int set(const std::string& leaf, const std::string& value) { return config_.setValue(leaf, value, 0); }
  int save() { return config_.save(1); }

  std::string valueOf(const std::string& leaf) {
    ICfmNode* node = config_.getNode(leaf);
    if (node == nullptr) return "no such leaf";
    std::string value = node->getValue();
    config_.releaseNode(node);
    return value;
  }

  // The names, each with a blank behind it.
  std::string instancesOf(int number) {
    ICfmIterator* iterator = config_.instanceIterator(number);
    if (iterator == nullptr) return "";
    std::string names;
    do {
      names += iterator->name() + ' ';
    } while (iterator->next() != 0);
    config_.releaseIterator(iterator);
    return names;
  }

  int attributeOf(int number) {
    std::int32_t attribute = -1;
    config_.getAttr(number, &attribute);
    return attribute;
  }

 private:
  Tree laidOver(std::vector<Object> objects) {
    Tree tree(std::move(objects));
    state_.restore(tree);
    return tree;
  }

  ConfigService::Store storeInState() {
    return [this](Tree& tree, const Changes& changes) { return state_.save(tree, changes); };
  }

  StateFile state_;
  QuietRegistry registry_;
  ConfigService config_;
};

}  // namespace host

#endif
