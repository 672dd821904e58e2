// SPDX-License-Identifier: MIT
// Records the calls of a library's entry points. Exported as "entries".
#ifndef CPP2C_TESTS_BINDING_CONTEXT_LIBRARIES_ENTRY_COUNTS_H
#define CPP2C_TESTS_BINDING_CONTEXT_LIBRARIES_ENTRY_COUNTS_H

struct EntryCounts {
  int obtained = 0;               // calls of "getInstance"
  int released = 0;               // calls of "relInstance"
  void* last_caller = nullptr;    // argument of the last "getInstance"
  void* last_released = nullptr;  // argument of the last "relInstance"
  void* next_instance = nullptr;  // result of "getInstance"
};

extern "C" {
extern EntryCounts entries;
void* getInstance(void* caller);
void relInstance(void* instance);
}

#endif
