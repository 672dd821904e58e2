/* SPDX-License-Identifier: MIT */
/* Compiled in each supported language: the header needs no other header before it. */
#include "include_c"
