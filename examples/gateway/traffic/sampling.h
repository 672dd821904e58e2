// SPDX-License-Identifier: MIT
// The timer that updates the meters. A process has only one timer: no other module may arm it.
#ifndef GATEWAY_TRAFFIC_SAMPLING_H
#define GATEWAY_TRAFFIC_SAMPLING_H

#include <stdint.h>

// Samples at once, then every `interval` milliseconds. Call it again to change the interval or the limit.
// Returns 0 or a result code.
int sampling_start(uint32_t interval, uint32_t limit);
void sampling_stop(void);

// Samples now, in addition to the timer.
void sampling_now(void);

#endif
