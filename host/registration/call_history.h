// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_REGISTRATION_CALL_HISTORY_H
#define CPP2C_HOST_REGISTRATION_CALL_HISTORY_H

#include <cstddef>
#include <deque>
#include <new>

#include "host/registration/registry.h"

namespace host {

// The latest calls, for the trace. Includes calls of registrations that no longer exist.
class CallHistory {
 public:
  explicit CallHistory(Registry& registry, std::size_t length = 10000) : length_(length) {
    registry.onCalled([this](const Call& call) { add(call); });
  }

  const std::deque<Call>& calls() const { return calls_; }  // in the order in which they returned

 private:
  void add(const Call& call) {
    if (calls_.size() == length_) calls_.pop_front();
    try {
      calls_.push_back(call);
    } catch (const std::bad_alloc&) {  // the call itself has succeeded; only the trace does not have it
    }
  }

  const std::size_t length_;
  std::deque<Call> calls_;
};

}  // namespace host

#endif
