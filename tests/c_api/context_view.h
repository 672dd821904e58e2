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

/* Expires the timer that has been armed last. */
int context_fire_timer(int value);

/* What the provider that has been registered last answers. Valid until the next time. */
const char* context_ask_provider(int id, const char* instance, const char* leaf);

/* The master observer that has been registered last, or NULL. */
void* context_master_observer(void);

/* Takes a participant through all steps of its lifecycle; returns the sum of their results. A
   module is one as it is. */
int drive_lifecycle(void* participant);

#ifdef __cplusplus
}
#endif

#endif
