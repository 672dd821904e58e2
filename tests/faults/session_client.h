// SPDX-License-Identifier: MIT
// A client of the session's own control socket. Its system calls cannot be made to fail.
#ifndef CPP2C_TESTS_FAULTS_SESSION_CLIENT_H
#define CPP2C_TESTS_FAULTS_SESSION_CLIENT_H

void client_start(const char* control);

// Closes the connection of the previous request and sends the next one. Returns 0 if there is none left.
int client_next(void);

#endif
