// SPDX-License-Identifier: MIT
#ifndef CPP2C_BINDING_INSTANCE_WALK_H
#define CPP2C_BINDING_INSTANCE_WALK_H

#include <memory>
#include <string>

#include "binding/context.h"

struct ReleaseIterator {
  ICfm* cfm;
  void operator()(ICfmIterator* iterator) const { cfm->releaseIterator(iterator); }
};

// Calls `visit` with `argument` and the name of each existing instance of object `id`. Returns the result of
// ICfm::releaseIterator(), or 0 if there is no instance. The iterator is also released if `visit` throws.
inline int walkInstances(ICfm& cfm, int id, void (*visit)(void* argument, std::string& name),
                         void* argument) {
  std::unique_ptr<ICfmIterator, ReleaseIterator> iterator(cfm.instanceIterator(id), ReleaseIterator{&cfm});
  if (iterator == nullptr) return 0;

  // The iterator starts at the first instance, so visit() comes before next().
  do {
    std::string name = iterator->name();
    visit(argument, name);
  } while (iterator->next() != 0);
  return cfm.releaseIterator(iterator.release());
}

// The same for a function object.
template <typename Visit>
int walkInstances(ICfm& cfm, int id, Visit visit) {
  return walkInstances(
      cfm, id, [](void* function, std::string& name) { (*static_cast<Visit*>(function))(name); }, &visit);
}

#endif
