/* SPDX-License-Identifier: MIT */
/* Compiled as each language that the header is for: it needs nothing before it. */
#include "include_c"
