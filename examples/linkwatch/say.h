// SPDX-License-Identifier: MIT
// The service's output. Only the implementation knows where it goes.
#ifndef LINKWATCH_SAY_H
#define LINKWATCH_SAY_H

enum say_level {
  SAY_PROBLEM,  // errors
  SAY_NEWS,     // interfaces, events, settings
  SAY_VALUE     // each value in the configuration tree
};

// Sets the highest level that is written.
void say_up_to(enum say_level level);

// Writes one line at once. The format is that of printf(), without a newline.
void say(enum say_level level, const char* format, ...) __attribute__((format(printf, 2, 3)));

#endif
