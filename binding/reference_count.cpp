// SPDX-License-Identifier: MIT
// Reference counts by name. Nothing happens when a count reaches 0. Entries are never erased.
#include "binding/globals.h"
#include "binding/result.h"

int reference_increase(const char* name) {
  const int count = ++g_reference_counts[name];
  c_debug_out(kTraceFile, __LINE__, "-----str=%s,count=%d", name, count);
  return count;
}

int reference_decrease(const char* name) {
  int& entry = g_reference_counts[name];
  if (entry > 0) --entry;
  const int count = entry;
  c_debug_out(kTraceFile, __LINE__, "-----str2=%s,count=%d", name, count);
  return count;
}
