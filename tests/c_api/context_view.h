/* SPDX-License-Identifier: MIT */
/* The recording context, as far as a test written in C needs it. */
#ifndef CPP2C_TESTS_C_API_CONTEXT_VIEW_H
#define CPP2C_TESTS_C_API_CONTEXT_VIEW_H

#ifdef __cplusplus
extern "C" {
#endif

/* The calls on the context since the last time, one a line. Valid until the next time. */
const char* context_calls(void);

/* What the operation called so in the log returns from now on. */
void context_set_result(const char* operation, int result);

void context_set_leaf(const char* fullname, const char* type, const char* value);
void context_add_instance(int id, const char* name);

/* Each calls the adapter that has been registered last, as the service would. */
int context_fire_watch(short events, int value);
int context_fire_event(const char* event, const char* data, const char* source);
int context_fire_change(int id, const char* instance, int operation, const char* leaf);

/* Takes a module through all steps of its lifecycle; returns the sum of their results. */
int drive_module(void* module);

#ifdef __cplusplus
}
#endif

#endif
