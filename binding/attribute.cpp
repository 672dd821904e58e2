// SPDX-License-Identifier: MIT
// Attributes of configuration nodes, and reference counts by name.
//
// Without a context or configuration service, c_cfm_set_attr() fails with C_RESULT_NOT_INIT, but
// c_cfm_get_attr() with C_RESULT_PARAM. Programs depend on the difference: keep it.
#include "binding/globals.h"
#include "binding/result.h"
#include "binding/services.h"

int c_cfm_set_attr(int node, int value) {
  ICfm* cfm = currentCfm();
  if (cfm == nullptr) return refuse(C_RESULT_NOT_INIT, "INIT ERROR!");
  return cfm->setAttr(node, value);
}

int c_cfm_get_attr(int node, void* out) {
  IContext* context = currentContext();
  if (context == nullptr || out == nullptr) return refuse(C_RESULT_PARAM, "PARAM ERROR!");
  ICfm* cfm = context->getCfm();
  if (cfm == nullptr) return refuse(C_RESULT_PARAM, "PARAM ERROR!");
  return cfm->getAttr(node, out);
}

// If memory runs out, the counts are as before: the trace needs the context, whose library is therefore
// opened first.
//
// Nothing happens when a count reaches 0. Entries of `g_reference_counts` are never erased.
int reference_increase(const char* name) {
  openContextLibrary();
  const int count = ++g_reference_counts[name];
  c_debug_out(kTraceFile, __LINE__, "-----str=%s,count=%d", name, count);
  return count;
}

int reference_decrease(const char* name) {
  openContextLibrary();
  int& entry = g_reference_counts[name];
  if (entry > 0) --entry;
  const int count = entry;
  c_debug_out(kTraceFile, __LINE__, "-----str2=%s,count=%d", name, count);
  return count;
}
