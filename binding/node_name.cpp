// SPDX-License-Identifier: MIT
// Arithmetic on the dotted names of configuration nodes, and what is reached by it.
#include <cstdio>
#include <cstring>
#include <memory>

#include "binding/instance_walk.h"
#include "binding/result.h"
#include "binding/services.h"

namespace {

constexpr unsigned int kBlockSize = 512;
constexpr const char kUp[] = "PARENT.";

struct FreeBlock {
  void operator()(char* block) const { c_free(block); }
};
using Block = std::unique_ptr<char, FreeBlock>;

Block newBlock() {
  return Block(c_malloc(kBlockSize, kTraceFile, __LINE__));
}

// `name` cut after the last dot that has a component behind it; empty if there is none. White space at the
// end only hides that dot from view: it is not trimmed.
std::string parentOf(const std::string& name) {
  const std::size_t last = name.find_last_not_of(" \n\t\r");
  std::size_t dot = name.rfind('.');
  if (dot != std::string::npos && dot == last) dot = dot > 0 ? name.rfind('.', dot - 1) : std::string::npos;
  return dot != std::string::npos ? name.substr(0, dot + 1) : std::string();
}

int copyOut(const std::string& prefix, char* buf, unsigned int buf_len, const char* function) {
  if (buf == nullptr || buf_len == 0) return failed(C_RESULT_PARAM, function);
  // The limit spares the buffer's last byte, so a buffer of one byte receives nothing, not even an end.
  std::snprintf(buf, buf_len - 1, "%s", prefix.c_str());
  return C_RESULT_OK;
}

// The two blocks of a relative access. Both are held until the typed function has returned.
struct Blocks {
  Block resolved;  // the full name of the leaf
  Block object;    // the object that the path leads to
};

// Makes the full name of the leaf `name` that `relpath` reaches from `base`.
int resolve(const char* function, const char* base, const char* relpath, const char* name, const char* type,
            Blocks& blocks) {
  if (base == nullptr || relpath == nullptr || name == nullptr || type == nullptr) {
    return leave(C_RESULT_PARAM, function);
  }
  blocks.resolved = newBlock();
  if (blocks.resolved == nullptr) return leave(C_RESULT_NO_MEMORY, function);
  blocks.object = newBlock();
  if (blocks.object == nullptr) {
    blocks.resolved.reset();  // before the diagnostic, whose formatting may need the memory
    return leave(C_RESULT_NO_MEMORY, function);
  }

  // Names of 512 bytes and more are not supported; they are cut, so that the block always has an end.
  std::strncpy(blocks.object.get(), base, kBlockSize - 1);
  for (const char* up = std::strstr(relpath, kUp); up != nullptr;
       up = std::strstr(up + sizeof kUp - 1, kUp)) {
    c_cfm_parent_fullname(blocks.object.get());  // at the top it says so and stays there
  }
  // An empty path adds no dot: a base that brings its own is joined as it stands.
  const char* separator = *relpath != '\0' ? "." : "";
  std::snprintf(blocks.resolved.get(), kBlockSize, "%s%s%s", blocks.object.get(), separator, name);
  return C_RESULT_OK;
}

}  // namespace

int c_cfm_get_parent_name(const char* fullname, char* buf, unsigned int buf_len) {
  return copyOut(parentOf(fullname), buf, buf_len, "c_cfm_get_parent_name");
}

int c_cfm_get_grand_name(const char* fullname, char* buf, unsigned int buf_len) {
  return copyOut(parentOf(parentOf(fullname)), buf, buf_len, "c_cfm_get_grand_name");
}

int c_cfm_set_value_v2(const char* fullname, const char* relpath, const char* name, const char* type,
                       const void* data, unsigned int data_len, int option) {
  Blocks blocks;
  const int result = resolve("c_cfm_set_value_v2", fullname, relpath, name, type, blocks);
  return result == C_RESULT_OK ? c_cfm_set_value(blocks.resolved.get(), option, type, data, data_len)
                               : result;
}

int c_cfm_get_value_v2(const char* fullname, const char* relpath, const char* name, const char* type,
                       void* data, unsigned int data_len) {
  Blocks blocks;
  const int result = resolve("c_cfm_get_value_v2", fullname, relpath, name, type, blocks);
  return result == C_RESULT_OK ? c_cfm_get_value(blocks.resolved.get(), type, data, data_len) : result;
}

int c_cfm_lookup_instance(int id, c_visit_callback visit, c_pass_fn3 pass_fn3, c_pass_fn4 pass_fn4,
                          void* arg) {
  IContext* context = currentContext();
  if (context == nullptr || visit == nullptr) return 0;
  ICfm* cfm = context->getCfm();
  if (cfm == nullptr) return 0;

  return walkInstances(*cfm, id,
                       [&](std::string name) { visit(id, name.data(), nullptr, pass_fn3, pass_fn4, arg); });
}
