// SPDX-License-Identifier: MIT
// When the meters are brought up to date. The timer is the process's only one: no other module may arm it.
#ifndef GATEWAY_TRAFFIC_SAMPLING_H
#define GATEWAY_TRAFFIC_SAMPLING_H

#include <stdint.h>

// Samples at once, then every `interval` milliseconds; also changes both while sampling. Returns 0 or a
// result code.
int sampling_start(uint32_t interval, uint32_t limit);
void sampling_stop(void);

// Samples now, beside the regular times.
void sampling_now(void);

#endif
