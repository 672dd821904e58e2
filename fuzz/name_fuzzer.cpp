// SPDX-License-Identifier: MIT
// The library computes the same names of configuration nodes as a model. An input consists of three texts
// with a NUL between them: a full name, a relative path and the name of a leaf.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "fuzz/expect.h"
#include "fuzz/harness.h"
#include "fuzz/recording_session.h"

namespace {

constexpr std::size_t kLongestName = 511;  // in relative access
constexpr char kFill = '#';                // a byte that the library must not change

struct Names {
  std::string full;
  std::string path;
  std::string leaf;
};

Names namesFrom(const std::uint8_t* data, std::size_t size) {
  std::string names[3];
  std::size_t field = 0;
  for (std::size_t i = 0; i < size; i++) {
    if (data[i] != 0) {
      names[field] += static_cast<char>(data[i]);
    } else if (++field == 3) {
      break;
    }
  }
  return {names[0], names[1], names[2]};
}

bool isBlank(char c) {
  return c == ' ' || c == '\n' || c == '\t' || c == '\r';
}

// Returns the text up to the last dot that is followed by anything other than white space.
std::string parentInModel(const std::string& name) {
  std::size_t end = 0;
  std::size_t after_dot = 0;
  for (std::size_t i = 0; i < name.size(); i++) {
    if (isBlank(name[i])) continue;
    end = after_dot;
    if (name[i] == '.') after_dot = i + 1;
  }
  return name.substr(0, end);
}

// Removes the last dot and the text after it. Returns whether there is a dot.
bool climbInModel(std::string& name) {
  for (std::size_t i = name.size(); i > 0; i--) {
    if (name[i - 1] != '.') continue;
    name.erase(i - 1);
    return true;
  }
  return false;
}

const std::string kStuck = diagnostic("c_cfm_parent_fullname: Leave: not find!\n", "framework/inc/include_c");

// Returns the full name of the leaf. Appends the diagnostics to `calls`.
std::string resolveInModel(const Names& names, Calls& calls) {
  std::string object = names.full.substr(0, kLongestName);
  for (std::size_t at = names.path.find("PARENT."); at != std::string::npos;
       at = names.path.find("PARENT.", at + 7)) {
    if (!climbInModel(object)) calls.push_back(kStuck);
  }
  if (!names.path.empty()) object += '.';
  return (object + names.leaf).substr(0, kLongestName);
}

using NameFunction = int (*)(const char* fullname, char* buf, unsigned int buf_len);

std::string copyInModel(const std::string& name, unsigned int size, std::string buffer) {
  if (size < 2) return buffer;
  const std::string copied = name.substr(0, size - 2);
  return buffer.replace(0, copied.size() + 1, copied.c_str(), copied.size() + 1);
}

class NameCheck {
 public:
  explicit NameCheck(const Names& names) : names_(names) {}

  void checkAncestors() {
    const std::string parent = parentInModel(names_.full);
    checkAncestor(c_cfm_get_parent_name, "c_cfm_get_parent_name", parent);
    checkAncestor(c_cfm_get_grand_name, "c_cfm_get_grand_name", parentInModel(parent));
  }

  void checkClimb() {
    std::string climbed = names_.full;
    const bool has_dot = climbInModel(climbed);
    std::string name = names_.full;
    const int result = c_cfm_parent_fullname(name.data());
    requireEqual<int>(result, has_dot ? C_RESULT_OK : C_RESULT_NOT_FOUND,
                      "result of c_cfm_parent_fullname()");
    requireEqual(std::string(name.c_str()), climbed, "result of c_cfm_parent_fullname()");
    checkCalls(has_dot ? Calls{} : Calls{kStuck}, "c_cfm_parent_fullname()");
  }

  void checkRelativeAccess() {
    Calls calls;
    const std::string name = resolveInModel(names_, calls);
    log().take();
    session_.proxy.context.cfm.leaves[name] = {"str", "value", 5};
    calls.insert(calls.end(), {"context.getCfm()", "cfm.getNode('" + name + "')", "node.getType()"});
    checkWrite(name, calls);
    checkRead(name, calls);
  }

  void checkMissingArguments() {
    for (std::size_t i = 0; i < 4; i++) {
      const char* arguments[] = {names_.full.c_str(), names_.path.c_str(), names_.leaf.c_str(), "str"};
      arguments[i] = nullptr;
      char data[] = "data";
      requireEqual<int>(
          c_cfm_set_value_v2(arguments[0], arguments[1], arguments[2], arguments[3], data, 5, 0),
          C_RESULT_PARAM, "result of c_cfm_set_value_v2()");
      checkCalls({diagnostic("c_cfm_set_value_v2: Leave: param error!\n")}, "c_cfm_set_value_v2()");
      requireEqual<int>(c_cfm_get_value_v2(arguments[0], arguments[1], arguments[2], arguments[3], data, 5),
                        C_RESULT_PARAM, "result of c_cfm_get_value_v2()");
      checkCalls({diagnostic("c_cfm_get_value_v2: Leave: param error!\n")}, "c_cfm_get_value_v2()");
    }
  }

 private:
  CallLog& log() { return session_.proxy.calls; }

  void checkCalls(const Calls& model, const std::string& function) {
    requireEqual(log().take(), model, "the calls of the context by " + function);
  }

  void checkAncestor(NameFunction function, const std::string& its_name, const std::string& name) {
    const Calls refusal = {diagnostic(its_name + " param error!")};
    requireEqual<int>(function(names_.full.c_str(), nullptr, 4), C_RESULT_PARAM,
                      its_name + " without buffer");
    checkCalls(refusal, its_name + "()");

    const auto enough = static_cast<unsigned int>(name.size() + 3);
    for (unsigned int size = enough > 16 ? enough - 16 : 0; size <= enough; size++) {
      std::string buffer(enough, kFill);
      const std::string copied = copyInModel(name, size, buffer);
      const int result = function(names_.full.c_str(), buffer.data(), size);
      requireEqual<int>(result, size > 0 ? C_RESULT_OK : C_RESULT_PARAM, "result of " + its_name + "()");
      requireEqual(buffer, copied, its_name + "() into " + std::to_string(size) + " bytes");
      checkCalls(size > 0 ? Calls{} : refusal, its_name + "()");
    }
  }

  void checkWrite(const std::string& name, Calls calls) {
    constexpr int kResult = 77;
    log().results["cfm.setValue"] = kResult;
    const int result = c_cfm_set_value_v2(names_.full.c_str(), names_.path.c_str(), names_.leaf.c_str(),
                                          "str", "text", 1, -3);
    calls.insert(calls.end(),
                 {"cfm.releaseNode('" + name + "')", "cfm.setValue('" + name + "', 'text', -3)"});
    requireEqual(result, kResult, "result of c_cfm_set_value_v2()");
    checkCalls(calls, "c_cfm_set_value_v2()");
  }

  void checkRead(const std::string& name, Calls calls) {
    std::string data(8, kFill);
    const int result = c_cfm_get_value_v2(names_.full.c_str(), names_.path.c_str(), names_.leaf.c_str(),
                                          "str", data.data(), 7);
    calls.insert(calls.end(), {"node.getLength()", "node.getValue()", "cfm.releaseNode('" + name + "')"});
    requireEqual<int>(result, C_RESULT_OK, "result of c_cfm_get_value_v2()");
    requireEqual(data, std::string("value\0##", 8), "the value read by c_cfm_get_value_v2()");
    checkCalls(calls, "c_cfm_get_value_v2()");
  }

  RecordingSession session_;
  Names names_;
};

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  NameCheck check(namesFrom(data, size));
  check.checkAncestors();
  check.checkClimb();
  check.checkRelativeAccess();
  check.checkMissingArguments();
  return 0;
}
