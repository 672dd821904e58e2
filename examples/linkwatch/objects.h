// SPDX-License-Identifier: MIT
// Numbers and names of the service's objects in the configuration tree, as declared by make-config.
#ifndef LINKWATCH_OBJECTS_H
#define LINKWATCH_OBJECTS_H

#define SETTINGS_NAME "Linkwatch.Settings."
#define LINK_NAME "Linkwatch.Link."

enum {
  SETTINGS_OBJECT = 100,
  LINK_OBJECT = 101,  // one instance for each interface, named by its index

  INSTANCE_NAME_SIZE = sizeof LINK_NAME "2147483647.",
  FULL_NAME_SIZE = 64
};

#endif
