// SPDX-License-Identifier: MIT
// Reads and writes leaves of the configuration tree.
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

// A leaf whose node has been obtained and has the type given by the caller. The node is released when the
// object goes out of scope, if not earlier.
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

  // getNode() returns null for any failure, also for an unknown name. Programs depend on this text and code:
  // keep them.
  leaf.node = {leaf.cfm->getNode(fullname), ReleaseNode{leaf.cfm}};
  if (leaf.node == nullptr) return refuse(C_RESULT_NOT_INIT, "malloc memory failed!");
  if (leaf.node->getType() != type) return refuse(C_RESULT_PARAM, kTypeMismatch);
  return C_RESULT_OK;
}

int readText(ICfmNode& node, void* data, unsigned int data_len) {
  if (data_len < node.getLength()) refuse(C_RESULT_OK, " data length of string is tool small!");
  // The last byte of the buffer is never written: a longer text is terminated only if the caller has set that
  // byte to 0. Programs depend on it: keep it.
  std::strncpy(static_cast<char*>(data), node.getValue().c_str(), data_len - 1);
  return C_RESULT_OK;
}

int readWord(ICfmNode& node, void* data, unsigned int data_len) {
  if (data_len < sizeof(std::int32_t)) return refuse(C_RESULT_PARAM, "warning!, data size is too small!");
  storeWord(data, std::atoi(node.getValue().c_str()));
  return C_RESULT_OK;
}

// Stores 4 bytes whatever length the caller gave: the length is not checked for flags. Every text except
// "false" and "0" is true, whereas c_cfm_str2bool() accepts only "true" and "false".
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

  // The node is released before the write. Words are read before the release; texts and flags after it.
  // The order matters if `data` changes while the service releases the node: keep it.
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
      break;  // a type that only the service knows: nothing is written, no failure
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
      break;  // a type that only the service knows: nothing is stored, no failure
  }
  return C_RESULT_OK;
}
