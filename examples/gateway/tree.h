// SPDX-License-Identifier: MIT
// Numbers and names of the product's objects in the configuration tree, as declared by make-config.
#ifndef GATEWAY_TREE_H
#define GATEWAY_TREE_H

#define GATEWAY_NAME "Gateway.Settings."
#define TRAFFIC_NAME "Gateway.Traffic."
#define TRAFFIC_LINK_NAME "Gateway.Traffic.Link."
#define ADDRESS_NAME "Gateway.Address."
#define ADDRESS_LINK_NAME "Gateway.Address.Link."

enum {
  GATEWAY_OBJECT = 110,
  TRAFFIC_OBJECT = 120,
  TRAFFIC_LINK_OBJECT = 121,  // one instance for each interface, named by its index
  ADDRESS_OBJECT = 130,
  ADDRESS_LINK_OBJECT = 131,  // one instance for each interface in use, named by its index

  NAME_SIZE = 64
};

// The notice with which the main program makes all modules check the interfaces again.
#define INTERFACES_NOTICE "interfaces"

#endif
