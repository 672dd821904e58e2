// SPDX-License-Identifier: MIT
#include "shell_word.h"

#include <string.h>

// Only a single quote is special inside single quotes: it is written outside of them.
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
