// SPDX-License-Identifier: MIT
#include "shell_word.h"

#include <string.h>

// Within single quotes every character stands for itself; a single quote must stand outside.
void shell_word(char* word, const char* text) {
  static const char kQuote[] = "'\\''";
  *word++ = '\'';
  for (; *text != '\0'; text++) {
    if (*text == '\'') {
      memcpy(word, kQuote, sizeof kQuote - 1);
      word += sizeof kQuote - 1;
    } else {
      *word++ = *text;
    }
  }
  *word++ = '\'';
  *word = '\0';
}
