/* SPDX-License-Identifier: MIT */
/* The functions that the loader of contexts and modules looks up. */
#ifndef CPP2C_TESTS_CONTEXTCTL_INSPECT_LIBRARIES_ENTRY_POINTS_H
#define CPP2C_TESTS_CONTEXTCTL_INSPECT_LIBRARIES_ENTRY_POINTS_H

#define EXPORTED __attribute__((visibility("default")))

#ifdef __cplusplus
extern "C" {
#endif

EXPORTED void* getInstance(void* context);
EXPORTED void relInstance(void* instance);

#ifdef __cplusplus
}
#endif

#endif
