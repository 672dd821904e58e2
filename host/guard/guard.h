// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_GUARD_GUARD_H
#define CPP2C_HOST_GUARD_GUARD_H

#include <optional>
#include <string_view>
#include <type_traits>
#include <vector>

#include "host/guard/operation.h"

namespace host {

// An operation with those of its arguments that checks look at: which leaf, event or command, and what text.
struct OperationCall {
  OperationCall(Operation what, std::string_view of = {}, std::string_view with = {})
      : operation(what), name(of), text(with) {}

  Operation operation;
  std::string_view name;
  std::string_view text;
};

// The text, or for null the empty one: what null means is up to the operation.
inline std::string_view viewOf(const char* text) {
  return text != nullptr ? std::string_view(text) : std::string_view();
}

// Sees each operation before it begins.
class IOperationCheck {
 public:
  virtual ~IOperationCheck() = default;

  // A code that is answered in the operation's place; without one, it takes its course.
  virtual std::optional<int> before(const OperationCall& call) = 0;
};

// The answer of an operation that is refused: the code, or null if it answers an object.
template <typename Answer>
Answer refusal(int code) {
  if constexpr (std::is_pointer_v<Answer>) {
    return nullptr;
  } else {
    return code;
  }
}

// What every operation of the context and its services passes.
class Guard {
 public:
  // Checks are asked in the order in which they were added, until one refuses.
  void add(IOperationCheck& check) { checks_.push_back(&check); }

  template <typename Function>
  auto enter(const OperationCall& call, Function function) {
    if (checks_.empty()) return function();  // the usual case, which must cost next to nothing
    const std::optional<int> code = before(call);
    if (!code) return function();
    if (takesBack(call.operation)) function();  // else the service would go on using what its caller deletes
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
