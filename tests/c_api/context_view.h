/* SPDX-License-Identifier: MIT */
/* Access to the recording context for a test written in C. */
#ifndef CPP2C_TESTS_C_API_CONTEXT_VIEW_H
#define CPP2C_TESTS_C_API_CONTEXT_VIEW_H

#ifdef __cplusplus
extern "C" {
#endif

/* Returns the calls of the context since the last context_calls(), one per line. Valid until the next one. */
const char* context_calls(void);

/* Sets the result of an operation, given by its name in the log. */
void context_set_result(const char* operation, int result);

void context_set_leaf(const char* fullname, const char* type, const char* value);
void context_add_instance(int id, const char* name);

/* Each calls the adapter registered last, like the service. */
int context_fire_watch(short events, int value);
int context_fire_event(const char* event, const char* data, const char* source);
int context_fire_change(int id, const char* instance, int operation, const char* leaf);

/* Calls the timer set last. */
int context_fire_timer(int value);

/* Requests a value from the provider registered last. The result is valid until the next request. */
const char* context_ask_provider(int id, const char* instance, const char* leaf);

/* Returns the master observer registered last, or NULL. */
void* context_master_observer(void);

/* Calls all steps of a participant's lifecycle; returns the sum of their results. `participant` is a
   module or the master observer. */
int drive_lifecycle(void* participant);

#ifdef __cplusplus
}
#endif

#endif
