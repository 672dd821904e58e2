// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_HOST_SUPPORT_RUNNING_LOOP_H
#define CPP2C_TESTS_HOST_SUPPORT_RUNNING_LOOP_H

#include <fcntl.h>
#include <unistd.h>

#include <chrono>
#include <functional>
#include <utility>

#include <gtest/gtest.h>

#include "binding/handlers.h"
#include "host/heartbeat/heartbeat.h"
#include "host/loop/event_base.h"
#include "host/loop/event_loop.h"
#include "tests/host/support/recording_log.h"

namespace host {

// Calls a function when its descriptor is ready.
class Handler final : public ILoopData {
 public:
  explicit Handler(std::function<void(short, int)> call) : call_(std::move(call)) {}

  int handler(short events, int value) override {
    call_(events, value);
    return 0;
  }

 private:
  std::function<void(short, int)> call_;
};

class Pipe {
 public:
  Pipe() {
    if (pipe2(ends_, O_CLOEXEC | O_NONBLOCK) != 0) ADD_FAILURE() << "no pipe";
  }
  ~Pipe() {
    close(ends_[0]);
    close(ends_[1]);
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  int reading() const { return ends_[0]; }
  int writing() const { return ends_[1]; }
  void put() const { EXPECT_EQ(write(writing(), "x", 1), 1); }
  void take() const {
    char byte = 0;
    EXPECT_EQ(read(reading(), &byte, 1), 1);
  }

 private:
  int ends_[2] = {-1, -1};
};

// A loop with what it needs.
class LoopFixture : public testing::Test {
 protected:
  // Makes the loop call a function from inside, in its turn among what is ready.
  void callInside(std::function<void()> call) {
    inside_ = std::move(call);
    wake_.put();
    loop_.addFd(wake_.reading(), EV_READ, &waker_);
  }

  // Stops the loop once everything that is ready now has been called.
  void stopWhenIdle() {
    callInside([this] { callInside([this] { loop_.stop(); }); });
  }

  RecordingLog log_;
  Heartbeat heartbeat_{log_, std::chrono::hours(1)};
  Registry registry_{heartbeat_};
  EventBase base_{log_};
  EventLoop loop_{base_, registry_};

 private:
  Pipe wake_;
  std::function<void()> inside_;
  Handler waker_{[this](short, int) {
    wake_.take();
    const std::function<void()> call = std::move(inside_);
    call();
  }};
};

}  // namespace host

#endif
