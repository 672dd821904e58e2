// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_REGISTRATION_CALL_HISTORY_H
#define CPP2C_HOST_REGISTRATION_CALL_HISTORY_H

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include "host/registration/registry.h"

namespace host {

// A call of the history.
struct PastCall {
  std::shared_ptr<const Registration> registration;
  Heartbeat::TimePoint begin;
  Heartbeat::TimePoint::duration duration;
  std::optional<int> result;
};

// The latest calls, for the trace. Includes calls of registrations that no longer exist.
class CallHistory {
 public:
  explicit CallHistory(Registry& registry, std::size_t length = 10000) : length_(length) {
    ring_.reserve(length);  // now, so that a call cannot fail when it has succeeded
    registry.onCalled([this](const Call& call) { add(call); });
  }

  std::vector<PastCall> calls() const {  // in the order in which they returned
    std::vector<PastCall> calls(ring_.begin() + static_cast<std::ptrdiff_t>(oldest_), ring_.end());
    calls.insert(calls.end(), ring_.begin(), ring_.begin() + static_cast<std::ptrdiff_t>(oldest_));
    return calls;
  }

 private:
  void add(const Call& call) {
    PastCall past{call.registration, call.before.time, call.after.time - call.before.time, call.result};
    if (ring_.size() < length_) {
      ring_.push_back(std::move(past));
    } else {
      ring_[oldest_] = std::move(past);
      oldest_ = (oldest_ + 1) % length_;
    }
  }

  const std::size_t length_;
  std::vector<PastCall> ring_;
  std::size_t oldest_ = 0;
};

}  // namespace host

#endif
