// SPDX-License-Identifier: MIT
#include "contextctl/system/deadline.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace contextctl {
namespace {

double now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

}  // namespace

Deadline::Deadline(double seconds) : moment_(now() + seconds) {}

int Deadline::millisecondsLeft() const {
  constexpr double kHour = 3600e3;
  return static_cast<int>(std::ceil(std::clamp((moment_ - now()) * 1e3, 0.0, kHour)));
}

}  // namespace contextctl
