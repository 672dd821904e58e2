// SPDX-License-Identifier: MIT
#include "host/state/restore.h"

#include <string>

#include "binding/context.h"
#include "host/config/tree.h"
#include "host/include/cpp2c_host.h"
#include "host/state/database.h"
#include "util/text.h"

namespace host {
namespace {

class Restorer {
 public:
  Restorer(Tree& tree, ILog& log) : tree_(tree), log_(log) {}

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

void Restorer::instance(const std::string& name, bool present) {
  Object* object = tree_.ownerOf(name);
  if (object == nullptr || !object->dynamic) {
    warn(name, std::string("the saved instance is ignored: it was ") +
                   (present ? "added to" : "deleted from") +
                   " an object that does not exist or is not dynamic");
  } else {
    tree_.deleteInstance(*object, name);  // with the values of the configuration: it was added without them
    if (present) tree_.addInstance(*object, name);
  }
}

// The messages do not show values, which may be secret.
void Restorer::value(const std::string& instance, const std::string& leaf, const std::string& type,
                     const std::string& value) {
  const std::string fullname = instance + leaf;
  const auto place = tree_.find(fullname);
  if (!place || place->instance == nullptr) {
    warn(fullname, "the saved value is ignored: the leaf does not exist");
  } else if (place->leaf->computed) {
    warn(fullname, "the saved value is ignored: the leaf is computed");
  } else if (type != place->leaf->type->name) {
    warn(fullname, "the saved value is ignored: its type is " + util::quoted(type) + ", the leaf's " +
                       util::quoted(place->leaf->type->name));
  } else if (!fits(*place->leaf->type, value)) {
    warn(fullname, "the saved value is ignored: it is not a value of type " + util::quoted(type));
  } else {
    place->instance->values[place->leaf->position] = value;
  }
}

void Restorer::attribute(const std::string& name, int value) {
  Object* object = tree_.named(name);
  if (object == nullptr) {
    warn(name, "the saved attribute is ignored: the object does not exist");
  } else {
    object->attribute = value;
  }
}

}  // namespace

void restoreTree(const Database& database, Tree& tree, ILog& log) {
  Restorer restorer(tree, log);
  Statement instances(database, "SELECT name, present FROM instance");
  while (instances.step()) restorer.instance(instances.text(0), instances.number(1) != 0);
  Statement values(database, "SELECT instance, leaf, type, value FROM value");
  while (values.step()) restorer.value(values.text(0), values.text(1), values.text(2), values.text(3));
  Statement attributes(database, "SELECT object, value FROM attribute");
  while (attributes.step()) restorer.attribute(attributes.text(0), attributes.number(1));
}

}  // namespace host
