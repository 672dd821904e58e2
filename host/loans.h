// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_LOANS_H
#define CPP2C_HOST_LOANS_H

#include <memory>
#include <unordered_map>
#include <utility>

// Objects on loan to the caller. Those that never come back are freed with the list.
template <typename Object>
class Loans {
 public:
  Object* lend(std::unique_ptr<Object> object) {
    Object* loan = object.get();
    objects_.emplace(loan, std::move(object));
    return loan;
  }

  // Frees the object. Returns false for one that is not on loan, whatever it points to.
  bool takeBack(const Object* object) { return objects_.erase(object) == 1; }

 private:
  std::unordered_map<const Object*, std::unique_ptr<Object>> objects_;
};

#endif
