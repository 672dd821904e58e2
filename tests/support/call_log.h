// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_SUPPORT_CALL_LOG_H
#define CPP2C_TESTS_SUPPORT_CALL_LOG_H

#include <functional>
#include <map>
#include <string>
#include <type_traits>
#include <vector>

using Calls = std::vector<std::string>;

// The calls that the context and its services received, oldest first, in a form to read and to compare:
// `cfm.setValue('A.B', '5', 7)`. A NUL inside a text shows as `\0`, a pointer as `null` or `object`.
class CallLog {
 public:
  // What the operations return, by their name in the log; 0 for those not named here.
  std::map<std::string, int> results;

  // Runs inside each call, after it has been written down.
  std::function<void(const std::string& call)> on_call;

  // Writes one call down and answers for it.
  template <typename... Arguments>
  int record(const std::string& operation, const Arguments&... arguments) {
    return finish(operation, {shown(arguments)...});
  }

  // The calls since the last take().
  Calls take();

 private:
  static std::string shown(const std::string& text);
  static std::string shown(const char* text);
  static std::string shown(const void* object);

  template <typename Integer, typename = std::enable_if_t<std::is_integral_v<Integer>>>
  static std::string shown(Integer value) {
    return std::to_string(value);
  }

  int finish(const std::string& operation, const std::vector<std::string>& arguments);

  Calls calls_;
};

#endif
