// SPDX-License-Identifier: MIT
// Attributes of configuration nodes.
//
// Without a context, c_cfm_set_attr() fails with C_RESULT_NOT_INIT but c_cfm_get_attr() with C_RESULT_PARAM.
// Programs depend on the difference: keep it.
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
