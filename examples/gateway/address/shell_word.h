// SPDX-License-Identifier: MIT
// Quoting of strings for shell commands.
#ifndef GATEWAY_ADDRESS_SHELL_WORD_H
#define GATEWAY_ADDRESS_SHELL_WORD_H

#include <stddef.h>

// Buffer size for any string of `size` bytes including its NUL: each byte may become four.
#define SHELL_WORD_SIZE(size) (4 * (size) + 2)

// Quotes `text`, so that the shell reads it as one word.
void shell_word(char* word, const char* text);

#endif
