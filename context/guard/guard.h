// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXT_GUARD_GUARD_H
#define CPP2C_CONTEXT_GUARD_GUARD_H

#include <optional>
#include <type_traits>
#include <vector>

#include "context/guard/operation.h"

// Sees each operation before it begins.
class IOperationCheck {
 public:
  virtual ~IOperationCheck() = default;

  // A code that is answered in the operation's place; without one, it takes its course.
  virtual std::optional<int> before(Operation operation) = 0;
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

  template <typename Call>
  auto enter(Operation operation, Call call) {
    for (IOperationCheck* check : checks_) {
      if (const std::optional<int> code = check->before(operation)) return refusal<decltype(call())>(*code);
    }
    return call();
  }

 private:
  std::vector<IOperationCheck*> checks_;
};

#endif
