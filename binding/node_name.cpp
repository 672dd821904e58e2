// SPDX-License-Identifier: MIT
// Names of configuration nodes: parent names, relative access to leaves, the lookup of instances.
#include <algorithm>
#include <cstring>
#include <memory>
#include <string_view>

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

// Returns `name` up to and including the last dot that is followed by a component, or an empty string. A dot
// at the end of `name`, even if white space follows it, is not followed by a component.
std::string_view parentOf(std::string_view name) {
  const std::size_t last = name.find_last_not_of(" \n\t\r");
  std::size_t dot = name.rfind('.');
  if (dot != name.npos && dot == last) dot = dot > 0 ? name.rfind('.', dot - 1) : name.npos;
  return name.substr(0, dot + 1);  // npos + 1 is 0
}

// `prefix` may be in `buf`.
int copyOut(std::string_view prefix, char* buf, unsigned int buf_len, const char* function) {
  if (buf == nullptr || buf_len == 0) return failed(C_RESULT_PARAM, function);
  // The last byte of the buffer is never used, so a buffer of one byte is not written at all. Keep it so.
  const std::size_t size = buf_len - 1;
  if (size == 0) return C_RESULT_OK;
  const std::size_t length = std::min(prefix.size(), size - 1);
  std::memmove(buf, prefix.data(), length);
  buf[length] = '\0';
  return C_RESULT_OK;
}

// Appends as much of `text` as fits to the `used` bytes of a block and returns their new number. The
// zero-filled block keeps the text terminated.
std::size_t append(const Block& block, std::size_t used, const char* text) {
  const std::size_t length = strnlen(text, kBlockSize - 1 - used);
  std::memcpy(block.get() + used, text, length);
  return used + length;
}

// The two buffers of a relative access. Both are freed after c_cfm_set_value() or c_cfm_get_value() returns.
struct Blocks {
  Block resolved;  // the full name of the leaf
  Block object;    // the object to which the path leads
};

// Writes the full name of the leaf `name`, found from `base` along `relpath`, to `blocks.resolved`.
int resolve(const char* function, const char* base, const char* relpath, const char* name, const char* type,
            Blocks& blocks) {
  if (base == nullptr || relpath == nullptr || name == nullptr || type == nullptr) {
    return leave(C_RESULT_PARAM, function);
  }
  blocks.resolved = newBlock();
  if (blocks.resolved == nullptr) return leave(C_RESULT_NO_MEMORY, function);
  blocks.object = newBlock();
  if (blocks.object == nullptr) {
    blocks.resolved.reset();  // before the diagnostic, because formatting it may need memory
    return leave(C_RESULT_NO_MEMORY, function);
  }

  append(blocks.object, 0, base);
  for (const char* up = std::strstr(relpath, kUp); up != nullptr;
       up = std::strstr(up + sizeof kUp - 1, kUp)) {
    c_cfm_parent_fullname(blocks.object.get());  // at the top, it only sends a diagnostic
  }
  // With an empty path no dot is added: `base` then ends with one.
  std::size_t used = append(blocks.resolved, 0, blocks.object.get());
  if (*relpath != '\0') used = append(blocks.resolved, used, ".");
  append(blocks.resolved, used, name);
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

  // Not data(): a string that shares its text copies it now, and data() must not throw.
  return walkInstances(*cfm, id,
                       [&](std::string& name) { visit(id, &name[0], nullptr, pass_fn3, pass_fn4, arg); });
}
