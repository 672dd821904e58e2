// SPDX-License-Identifier: MIT
// Texts of the result codes, and functions that report a failure.
#ifndef CPP2C_BINDING_RESULT_H
#define CPP2C_BINDING_RESULT_H

#include "binding/limits.h"
#include "include_c"

// Returns the text of a result code; never null.
const char* errorText(int code);

// Each of these functions sends one diagnostic and returns `code`. `line` is the line of the call.

// Diagnostic: `message`.
int refuse(int code, const char* message, int line = __builtin_LINE());

// Diagnostic: "<operation> <text of the code>".
int failed(int code, const char* operation, int line = __builtin_LINE());

// Diagnostic: "<function>: Leave: <text of the code>" and a line feed.
int leave(int code, const char* function, int line = __builtin_LINE());

#endif
