// SPDX-License-Identifier: MIT
// A text as one word of a shell command.
#ifndef GATEWAY_ADDRESS_SHELL_WORD_H
#define GATEWAY_ADDRESS_SHELL_WORD_H

#include <stddef.h>

// Room for any text of `size` bytes, its end included: each byte may become four.
#define SHELL_WORD_SIZE(size) (4 * (size) + 2)

// Quotes `text`, so that the shell takes it as it stands.
void shell_word(char* word, const char* text);

#endif
