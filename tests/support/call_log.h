// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_SUPPORT_CALL_LOG_H
#define CPP2C_TESTS_SUPPORT_CALL_LOG_H

#include <functional>
#include <map>
#include <string>
#include <type_traits>
#include <vector>

using Calls = std::vector<std::string>;

// The calls of the context and its services, oldest first, as strings: `cfm.setValue('A.B', '5', 7)`. A NUL
// within a string is shown as `\0`, a pointer as `null` or `object`.
class CallLog {
 public:
  // The results of operations, by their name in the log. Other operations return 0.
  std::map<std::string, int> results;

  // Called within each call, after the call has been recorded.
  std::function<void(const std::string& call)> on_call;

  // Records one call and returns its result.
  template <typename... Arguments>
  int record(const std::string& operation, const Arguments&... arguments) {
    return finish(operation, {shown(arguments)...});
  }

  // Returns the calls since the last take().
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
