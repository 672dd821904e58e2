// SPDX-License-Identifier: MIT
// Answers for what the configuration tree holds of the meters: the values are computed when they are read.
#ifndef GATEWAY_TRAFFIC_VALUES_H
#define GATEWAY_TRAFFIC_VALUES_H

// Registers for the whole life of the context: the framework forgets a provider only when it ends.
void values_provide(void);

#endif
