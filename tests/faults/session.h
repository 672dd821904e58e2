// SPDX-License-Identifier: MIT
// A session that calls every C function, in steps that a C++ program runs one by one.
#ifndef CPP2C_TESTS_FAULTS_SESSION_H
#define CPP2C_TESTS_FAULTS_SESSION_H

#ifdef __cplusplus
extern "C" {
#endif

typedef struct session_step {
  const char* name;
  int (*run)(void);
} session_step_t;

// The steps in order; the last has no name.
extern const session_step_t kSessionSteps[];

// A service that runs until SIGTERM.
extern const session_step_t kSessionService[];

// Opens a saved state, and reports the counter as "counter N".
extern const session_step_t kSessionCheck[];

// To be called first. `control` is the path of the control socket. The report gets one line for each result.
void session_start(int argc, char** argv, const char* control, int report);

// Writes one line to the report, without using the heap or functions that can be made to fail.
void session_report(const char* name, const char* result);
void session_report_number(const char* name, long result);

#ifdef __cplusplus
}
#endif

#endif
