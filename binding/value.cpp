// SPDX-License-Identifier: MIT
// Typed reads and writes of the leaves of the configuration tree.
#include <cstdlib>
#include <cstring>
#include <memory>

#include "binding/result.h"
#include "binding/services.h"
#include "binding/value_type.h"

namespace {

struct ReleaseNode {
  ICfm* cfm = nullptr;
  void operator()(ICfmNode* node) const { cfm->releaseNode(node); }
};

// A leaf that is open for one access: its node is on loan and of the caller's type. The node goes back when
// the leaf goes out of scope, unless it was handed back before.
struct OpenLeaf {
  ICfm* cfm = nullptr;
  std::unique_ptr<ICfmNode, ReleaseNode> node;
};

int openLeaf(const char* fullname, const char* type, const void* data, unsigned int data_len,
             OpenLeaf& leaf) {
  if (fullname == nullptr) return refuse(C_RESULT_PARAM, "fullname is NULL, error!");
  if (type == nullptr) return refuse(C_RESULT_PARAM, "type is NULL, error!");
  if (data == nullptr || data_len == 0) {
    return refuse(C_RESULT_PARAM, "data is NULL or data_len is 0, error!");
  }

  IContext* context = currentContext();
  if (context == nullptr) return refuse(C_RESULT_NOT_INIT, "Not inited, error!");
  leaf.cfm = context->getCfm();
  if (leaf.cfm == nullptr) return refuse(C_RESULT_NOT_INIT, "not inited, error!");

  // A name that does not exist is told from nothing else that keeps the service from giving a node, and has
  // always been reported with this text and this code.
  leaf.node = {leaf.cfm->getNode(fullname), ReleaseNode{leaf.cfm}};
  if (leaf.node == nullptr) return refuse(C_RESULT_NOT_INIT, "malloc memory failed!");
  if (leaf.node->getType() != type) return refuse(C_RESULT_PARAM, kTypeMismatch);
  return C_RESULT_OK;
}

int readText(ICfmNode& node, void* data, unsigned int data_len) {
  if (data_len < node.getLength()) refuse(C_RESULT_OK, " data length of string is tool small!");
  // The last byte of the buffer is the caller's: it is never written, so a text that fills the rest ends only
  // if the caller cleared the buffer.
  std::strncpy(static_cast<char*>(data), node.getValue().c_str(), data_len - 1);
  return C_RESULT_OK;
}

int readWord(ICfmNode& node, void* data, unsigned int data_len) {
  if (data_len < sizeof(std::int32_t)) return refuse(C_RESULT_PARAM, "warning!, data size is too small!");
  storeWord(data, std::atoi(node.getValue().c_str()));
  return C_RESULT_OK;
}

// Stores a whole word whatever length the caller gave: flags have never been checked for it. Any text but
// "false" and "0" is true, which is more than c_cfm_str2bool() lets pass.
int readFlag(ICfmNode& node, void* data) {
  const std::string text = node.getValue();
  storeWord(data, text == "false" || text == "0" ? 0 : 1);
  return C_RESULT_OK;
}

}  // namespace

int c_cfm_set_value(const char* fullname, int option, const char* type, const void* data,
                    unsigned int data_len) {
  OpenLeaf leaf;
  const int opened = openLeaf(fullname, type, data, data_len, leaf);
  if (opened != C_RESULT_OK) return opened;

  // The service gets the node back before the write. A word becomes text before that, as always; texts and
  // flags are read after it.
  switch (valueKind(type)) {
    case ValueKind::kText:
      leaf.node.reset();
      return leaf.cfm->setValue(fullname, static_cast<const char*>(data), option);
    case ValueKind::kWord: {
      const WordText text(loadWord(data));
      leaf.node.reset();
      return leaf.cfm->setValue(fullname, text.c_str(), option);
    }
    case ValueKind::kFlag:
      leaf.node.reset();
      return leaf.cfm->setValue(fullname, loadWord(data) != 0 ? "true" : "false", option);
    case ValueKind::kUnknown:
      break;  // a type of the service's own: nothing to write, and no failure
  }
  return C_RESULT_OK;
}

int c_cfm_get_value(const char* fullname, const char* type, void* data, unsigned int data_len) {
  OpenLeaf leaf;
  const int opened = openLeaf(fullname, type, data, data_len, leaf);
  if (opened != C_RESULT_OK) return opened;

  switch (valueKind(type)) {
    case ValueKind::kText:
      return readText(*leaf.node, data, data_len);
    case ValueKind::kWord:
      return readWord(*leaf.node, data, data_len);
    case ValueKind::kFlag:
      return readFlag(*leaf.node, data);
    case ValueKind::kUnknown:
      break;  // a type of the service's own: nothing to store, and no failure
  }
  return C_RESULT_OK;
}
