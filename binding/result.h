// SPDX-License-Identifier: MIT
// Texts of the result codes, and the shapes of the diagnostics that report a failure.
#ifndef CPP2C_BINDING_RESULT_H
#define CPP2C_BINDING_RESULT_H

#include "binding/limits.h"
#include "include_c"

// The text of a result code; never null.
const char* errorText(int code);

// Each of these writes one diagnostic and returns `code`. The line is that of the caller.

// The message itself.
int refuse(int code, const char* message, int line = __builtin_LINE());

// "<operation> <text of the code>".
int failed(int code, const char* operation, int line = __builtin_LINE());

// "<function>: Leave: <text of the code>" and a line feed.
int leave(int code, const char* function, int line = __builtin_LINE());

#endif
