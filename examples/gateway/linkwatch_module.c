// SPDX-License-Identifier: MIT
// linkwatch as a module.
#include <stddef.h>

#include "linkwatch.h"
#include "module_library.h"
#include "monitor.h"

const struct service g_service = {
    .name = "linkwatch",
    .start = linkwatch_start,
    .stop = linkwatch_stop,
    .refresh = monitor_resync,
};
