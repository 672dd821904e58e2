// SPDX-License-Identifier: MIT
// Prints each event of the product in one line, which gateway-report can read.
#ifndef GATEWAY_JOURNAL_H
#define GATEWAY_JOURNAL_H

void journal_start(void);
void journal_stop(void);

#endif
