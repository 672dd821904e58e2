// SPDX-License-Identifier: MIT
#ifndef CPP2C_BINDING_INSTANCE_WALK_H
#define CPP2C_BINDING_INSTANCE_WALK_H

#include "binding/context.h"

// Calls `visit` with the name of each existing instance of object `id`. Returns the result of
// ICfm::releaseIterator(), or 0 if there is no instance.
template <typename Visit>
int walkInstances(ICfm& cfm, int id, Visit visit) {
  ICfmIterator* iterator = cfm.instanceIterator(id);
  if (iterator == nullptr) return 0;

  // The iterator starts at the first instance, so visit() comes before next().
  do {
    visit(iterator->name());
  } while (iterator->next() != 0);
  return cfm.releaseIterator(iterator);
}

#endif
