// SPDX-License-Identifier: MIT
// Attributes of configuration nodes. What is missing is reported by different codes in the two functions, on
// purpose: a failed read has always been the caller's error, a failed write the context's.
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
