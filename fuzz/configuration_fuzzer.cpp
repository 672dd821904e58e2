// SPDX-License-Identifier: MIT
// Any text is read as a consistent configuration, or refused with one message that names its source.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>

#include "fuzz/harness.h"
#include "host/config/name.h"
#include "host/config/tree.h"
#include "host/start/configuration_file.h"
#include "include_c"
#include "util/error.h"

using namespace host;

namespace {

const char kSource[] = "config.json";

void checkObject(const Object& object) {
  require(isObjectName(object.name), "the name of an object consists of components");
  for (const Leaf& leaf : object.leaves) {
    require(isComponent(leaf.name), "the name of a leaf is a component");
    require(fits(*leaf.type, leaf.default_value), "a default fits its type");
  }
  for (const auto& [name, instance] : object.instances) {
    require(isObjectName(name), "the name of an instance consists of components");
    for (const Leaf& leaf : object.leaves) {
      require(fits(*leaf.type, instance.values.at(leaf.position)), "a value fits its type");
    }
  }
}

void checkTree(Tree tree, std::size_t objects) {
  require(tree.objects().size() == objects, "all numbers are unique");
  for (const auto& [number, object] : tree.objects()) {
    require(tree.named(object.name) == tree.find(number), "all names are unique");
    for (const auto& [name, instance] : object.instances) {
      require(tree.ownerOf(name) == &object, "an instance has one owner");
      for (const Leaf& leaf : object.leaves) {
        const auto place = tree.find(name + leaf.name);
        require(place && place->leaf == &leaf, "a leaf is found by its name");
      }
    }
  }
}

void checkMessage(const util::Error& error) {
  require(error.code() == C_RESULT_PARAM, "a refused text has the code for a bad parameter");
  require(std::strncmp(error.what(), kSource, std::strlen(kSource)) == 0, "a message names its source");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    Configuration configuration = parseConfiguration(std::string(data, data + size), kSource);
    require(configuration.heartbeat_limit.count() > 0, "the limit is positive");
    for (const Object& object : configuration.objects) checkObject(object);
    const std::size_t objects = configuration.objects.size();
    checkTree(Tree(std::move(configuration.objects)), objects);
  } catch (const util::Error& error) {
    checkMessage(error);
  }
  return 0;
}
