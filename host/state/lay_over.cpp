// SPDX-License-Identifier: MIT
#include "host/state/lay_over.h"

#include <string>

#include "binding/context.h"
#include "host/config/tree.h"
#include "host/include/cpp2c_host.h"
#include "host/state/database.h"
#include "util/text.h"

namespace {

class Overlay {
 public:
  Overlay(Tree& tree, ILog& log) : tree_(tree), log_(log) {}

  void instance(const std::string& name, bool present);
  void value(const std::string& instance, const std::string& leaf, const std::string& type,
             const std::string& value);
  void attribute(const std::string& object, int value);

 private:
  void warn(const std::string& name, const std::string& what) {
    log_.record("state", C_LOG_WARNING, (name + ": " + what).c_str());
  }

  Tree& tree_;
  ILog& log_;
};

void Overlay::instance(const std::string& name, bool present) {
  Object* object = tree_.ownerOf(name);
  if (object == nullptr || !object->dynamic) {
    warn(name, std::string("saved as ") + (present ? "added" : "deleted") + ", but of no dynamic object");
  } else if (present) {
    object->instances[name] = Values();  // without those of the configuration, which it was not added with
  } else {
    object->instances.erase(name);
  }
}

// No message shows the value, which may be secret.
void Overlay::value(const std::string& instance, const std::string& leaf, const std::string& type,
                    const std::string& value) {
  const std::string fullname = instance + leaf;
  const auto place = tree_.find(fullname);
  if (!place || place->values == nullptr) {
    warn(fullname, "saved, but there is no such leaf");
  } else if (place->leaf->computed) {
    warn(fullname, "saved, but the leaf is computed");
  } else if (type != place->leaf->type->name) {
    warn(fullname,
         "saved as " + util::quoted(type) + ", but the leaf is a " + util::quoted(place->leaf->type->name));
  } else if (!fits(*place->leaf->type, value)) {
    warn(fullname, "what is saved is not a value of type " + util::quoted(type));
  } else {
    (*place->values)[leaf] = value;
  }
}

void Overlay::attribute(const std::string& name, int value) {
  Object* object = tree_.named(name);
  if (object == nullptr) {
    warn(name, "an attribute is saved, but there is no such object");
  } else {
    object->attribute = value;
  }
}

}  // namespace

void layOver(const Database& database, Tree& tree, ILog& log) {
  Overlay overlay(tree, log);
  Statement instances(database, "SELECT name, present FROM instance");
  while (instances.step()) overlay.instance(instances.text(0), instances.number(1) != 0);
  Statement values(database, "SELECT instance, leaf, type, value FROM value");
  while (values.step()) overlay.value(values.text(0), values.text(1), values.text(2), values.text(3));
  Statement attributes(database, "SELECT object, value FROM attribute");
  while (attributes.step()) overlay.attribute(attributes.text(0), attributes.number(1));
}
