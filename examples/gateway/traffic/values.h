// SPDX-License-Identifier: MIT
// The data provider for the meters: their values are computed each time they are read.
#ifndef GATEWAY_TRAFFIC_VALUES_H
#define GATEWAY_TRAFFIC_VALUES_H

// Registers the data provider. The framework removes it only when the context ends.
void values_provide(void);

#endif
