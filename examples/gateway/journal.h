// SPDX-License-Identifier: MIT
// Prints every event of the product, one line each: gateway-report reads them.
#ifndef GATEWAY_JOURNAL_H
#define GATEWAY_JOURNAL_H

void journal_start(void);
void journal_stop(void);

#endif
