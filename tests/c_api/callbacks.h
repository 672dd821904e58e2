/* SPDX-License-Identifier: MIT */
/* One callback of each type in the C interface. Each records its calls. */
#ifndef CPP2C_TESTS_C_API_CALLBACKS_H
#define CPP2C_TESTS_C_API_CALLBACKS_H

#include "include_c"

/* Whether exactly these calls were made since the last was_told(). */
int was_told(const char* expected);

void on_ready(void* user, short events, int value);
int on_timer(void);
int on_event(void* user, const char* event, const char* data, const char* source);
int on_change(void* user, int id, const char* instance, int operation, const char* leaf);
void on_request(int id, const char* instance, const char* leaf, void* user, void* handle);
int pass3(int id, char* name, void* userdata);
int pass4(int id, char* name, void* userdata, void* arg);
int on_visit(int id, char* name, void* userdata, c_pass_fn3 pass_fn3, c_pass_fn4 pass_fn4, void* arg);

/* A table whose functions each return a different power of two. */
extern ModuleCallbacks lifecycle;

#endif
