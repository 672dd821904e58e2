// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_GUARD_GUARD_H
#define CPP2C_HOST_GUARD_GUARD_H

#include <optional>
#include <string_view>
#include <type_traits>
#include <vector>

#include "host/guard/operation.h"

namespace host {

// One call of an operation with the arguments that checks need: a name (leaf, event or file) and a text.
struct OperationCall {
  OperationCall(Operation called, std::string_view name_argument = {}, std::string_view text_argument = {})
      : operation(called), name(name_argument), text(text_argument) {}

  Operation operation;
  std::string_view name;
  std::string_view text;
};

// The text; empty for null, which is left to the operation.
inline std::string_view viewOf(const char* text) {
  return text != nullptr ? std::string_view(text) : std::string_view();
}

// Checks each call of an operation before it is made.
class IOperationCheck {
 public:
  virtual ~IOperationCheck() = default;

  // Returns the code with which to refuse the call, or nothing to let it through.
  virtual std::optional<int> before(const OperationCall& call) = 0;
};

// The result of a refused call: the code, or null if the operation returns an object.
template <typename Result>
Result refusal(int code) {
  if constexpr (std::is_pointer_v<Result>) {
    return nullptr;
  } else {
    return code;
  }
}

// Every call of the context and its services passes through the guard, which applies the checks.
class Guard {
 public:
  // Checks are applied in the order in which they were added, until one refuses the call.
  void add(IOperationCheck& check) { checks_.push_back(&check); }

  template <typename Function>
  auto enter(const OperationCall& call, Function function) {
    if (checks_.empty()) return function();  // the usual case, which must be cheap
    const std::optional<int> code = before(call);
    if (!code) return function();
    // A release is carried out all the same: the caller deletes the object that the service would keep using.
    if (isRelease(call.operation)) function();
    return refusal<decltype(function())>(*code);
  }

 private:
  std::optional<int> before(const OperationCall& call) {
    for (IOperationCheck* check : checks_) {
      if (const std::optional<int> code = check->before(call)) return code;
    }
    return std::nullopt;
  }

  std::vector<IOperationCheck*> checks_;
};

}  // namespace host

#endif
