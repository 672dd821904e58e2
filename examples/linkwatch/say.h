// SPDX-License-Identifier: MIT
// What the service tells the outside. The only place that knows where its words go.
#ifndef LINKWATCH_SAY_H
#define LINKWATCH_SAY_H

enum say_level {
  SAY_PROBLEM,  // something did not work
  SAY_NEWS,     // interfaces, events, settings
  SAY_VALUE     // each value in the configuration tree
};

// Sets how much is said: everything up to `level`.
void say_up_to(enum say_level level);

// Writes one line on standard output, at once. The format is as for printf(), without a line end.
void say(enum say_level level, const char* format, ...) __attribute__((format(printf, 2, 3)));

#endif
