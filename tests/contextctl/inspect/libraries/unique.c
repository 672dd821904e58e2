// SPDX-License-Identifier: MIT
// In assembly: it depends on the compiler which C++ symbols become unique.
__asm__(
    ".data\n"
    ".globl the_unique_one\n"
    ".type the_unique_one, %gnu_unique_object\n"
    ".size the_unique_one, 4\n"
    "the_unique_one: .long 0\n"
    ".previous\n");

extern int the_unique_one;
