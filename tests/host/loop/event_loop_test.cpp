// SPDX-License-Identifier: MIT
#include "host/loop/event_loop.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/include/cpp2c_host.h"
#include "include_c"
#include "tests/host/support/running_loop.h"
#include "tests/support/temporary_folder.h"

namespace host {
namespace {

class EventLoopTest : public LoopFixture {
 protected:
  // Runs the loop until everything that is ready has been called.
  void runUntilIdle() {
    stopWhenIdle();
    EXPECT_EQ(loop_.run(), C_RESULT_OK);
  }

  Pipe pipe_;
  int calls_ = 0;
  Handler count_{[this](short, int) { calls_++; }};
};

TEST_F(EventLoopTest, HandlerGetsReadinessAndDescriptor) {
  std::vector<int> got;
  Handler handler([&](short events, int value) {
    got = {events, value};
    pipe_.take();
  });
  pipe_.put();
  EXPECT_EQ(loop_.addFd(pipe_.reading(), C_LOOP_READ, &handler), C_RESULT_OK);
  runUntilIdle();
  EXPECT_EQ(got, (std::vector<int>{C_LOOP_READ, pipe_.reading()}));
}

TEST_F(EventLoopTest, HandlerGetsRoomToWrite) {
  short got = 0;
  Handler handler([&](short events, int) { got = events; });
  loop_.addFd(pipe_.writing(), C_LOOP_WRITE | C_LOOP_EDGE, &handler);
  runUntilIdle();
  EXPECT_EQ(got, C_LOOP_WRITE);
}

TEST_F(EventLoopTest, DescriptorThatIsNotReadyIsNotCalled) {
  loop_.addFd(pipe_.reading(), C_LOOP_READ, &count_);
  runUntilIdle();
  EXPECT_EQ(calls_, 0);
}

TEST_F(EventLoopTest, WatchPersists) {
  pipe_.put();
  loop_.addFd(pipe_.reading(), C_LOOP_READ, &count_);
  runUntilIdle();
  EXPECT_GE(calls_, 2);
}

TEST_F(EventLoopTest, PersistingWatchMayBeAskedForByName) {
  pipe_.put();
  EXPECT_EQ(loop_.addFd(pipe_.reading(), C_LOOP_READ | C_LOOP_PERSIST, &count_), C_RESULT_OK);
  runUntilIdle();
  EXPECT_GE(calls_, 2);
}

TEST_F(EventLoopTest, OnceIsOnce) {
  pipe_.put();
  EXPECT_EQ(loop_.addFd(pipe_.reading(), C_LOOP_READ | C_LOOP_ONCE, &count_), C_RESULT_OK);
  runUntilIdle();
  EXPECT_EQ(calls_, 1);
  EXPECT_EQ(loop_.delFd(pipe_.reading()), C_RESULT_NOT_FOUND);
}

TEST_F(EventLoopTest, EdgeIsCalledOnceForOneChange) {
  pipe_.put();
  EXPECT_EQ(loop_.addFd(pipe_.reading(), C_LOOP_READ | C_LOOP_EDGE, &count_), C_RESULT_OK);
  runUntilIdle();
  EXPECT_EQ(calls_, 1);
}

TEST_F(EventLoopTest, WatchingAgainReplacesMaskAndHandler) {
  loop_.addFd(pipe_.writing(), C_LOOP_WRITE | C_LOOP_EDGE, &count_);
  short got = 0;
  Handler later([&](short events, int) { got = events; });
  EXPECT_EQ(loop_.addFd(pipe_.writing(), C_LOOP_WRITE, &later), C_RESULT_OK);
  runUntilIdle();
  EXPECT_EQ(calls_, 0);
  EXPECT_EQ(got, C_LOOP_WRITE);
}

TEST_F(EventLoopTest, DeletedWatchIsNotCalled) {
  pipe_.put();
  loop_.addFd(pipe_.reading(), C_LOOP_READ, &count_);
  EXPECT_EQ(loop_.delFd(pipe_.reading()), C_RESULT_OK);
  runUntilIdle();
  EXPECT_EQ(calls_, 0);
}

TEST_F(EventLoopTest, DescriptorThatIsNotWatchedIsNotFound) {
  EXPECT_EQ(loop_.delFd(pipe_.reading()), C_RESULT_NOT_FOUND);
  EXPECT_EQ(loop_.delFd(-1), C_RESULT_NOT_FOUND);
}

TEST_F(EventLoopTest, HandlerMayDeleteItsOwnWatch) {
  Handler handler([this](short, int fd) {
    calls_++;
    EXPECT_EQ(loop_.delFd(fd), C_RESULT_OK);
  });
  pipe_.put();
  loop_.addFd(pipe_.reading(), C_LOOP_READ, &handler);
  runUntilIdle();
  EXPECT_EQ(calls_, 1);
}

TEST_F(EventLoopTest, HandlerMayWatchItsOwnDescriptorAnew) {
  Handler handler([this](short, int fd) { loop_.addFd(fd, C_LOOP_READ | C_LOOP_ONCE, &count_); });
  pipe_.put();
  loop_.addFd(pipe_.reading(), C_LOOP_READ, &handler);
  runUntilIdle();
  EXPECT_EQ(calls_, 1);
}

// Both are ready at the same time, and whichever is called first deletes the other one.
TEST_F(EventLoopTest, WatchThatIsDeletedMeanwhileIsNotCalled) {
  Pipe other;
  Handler handler([&](short, int fd) {
    calls_++;
    loop_.delFd(fd == pipe_.reading() ? other.reading() : pipe_.reading());
    loop_.delFd(fd);
  });
  pipe_.put();
  other.put();
  loop_.addFd(pipe_.reading(), C_LOOP_READ, &handler);
  loop_.addFd(other.reading(), C_LOOP_READ, &handler);
  runUntilIdle();
  EXPECT_EQ(calls_, 1);
}

TEST_F(EventLoopTest, HandlerMayAddAWatch) {
  Pipe other;
  other.put();
  Handler handler([&](short, int fd) {
    loop_.delFd(fd);
    loop_.addFd(other.reading(), C_LOOP_READ | C_LOOP_ONCE, &count_);
  });
  pipe_.put();
  loop_.addFd(pipe_.reading(), C_LOOP_READ, &handler);
  runUntilIdle();
  runUntilIdle();
  EXPECT_EQ(calls_, 1);
}

TEST_F(EventLoopTest, BadMaskIsRefused) {
  const int bad[] = {0,    C_LOOP_PERSIST,      C_LOOP_EDGE, 1,
                     0x08, C_LOOP_READ | 0x200, -1,          C_LOOP_READ | C_LOOP_PERSIST | C_LOOP_ONCE};
  for (const int mask : bad) EXPECT_EQ(loop_.addFd(pipe_.reading(), mask, &count_), C_RESULT_PARAM) << mask;
}

TEST_F(EventLoopTest, NullHandlerAndNegativeDescriptorAreRefused) {
  EXPECT_EQ(loop_.addFd(pipe_.reading(), C_LOOP_READ, nullptr), C_RESULT_PARAM);
  EXPECT_EQ(loop_.addFd(-1, C_LOOP_READ, &count_), C_RESULT_PARAM);
}

TEST_F(EventLoopTest, BadMaskLeavesTheWatchAsItIs) {
  loop_.addFd(pipe_.reading(), C_LOOP_READ, &count_);
  loop_.addFd(pipe_.reading(), 0, &count_);
  EXPECT_EQ(loop_.delFd(pipe_.reading()), C_RESULT_OK);
}

TEST_F(EventLoopTest, RegularFileIsRefusedAndTheReasonLogged) {
  const TemporaryFolder folder;
  const int fd = open(folder.write("file", "").c_str(), O_RDONLY | O_CLOEXEC);
  EXPECT_EQ(loop_.addFd(fd, C_LOOP_READ, &count_), C_RESULT_SYSTEM_CALL);
  EXPECT_EQ(loop_.delFd(fd), C_RESULT_NOT_FOUND);
  close(fd);
  ASSERT_EQ(log_.records.size(), 1U);
  EXPECT_EQ(log_.records[0].rfind("4 libevent: ", 0), 0U) << log_.records[0];
}

TEST_F(EventLoopTest, ClosedDescriptorIsRefused) {
  const int fd = dup(pipe_.reading());
  close(fd);
  EXPECT_EQ(loop_.addFd(fd, C_LOOP_READ, &count_), C_RESULT_SYSTEM_CALL);
}

TEST_F(EventLoopTest, InterruptStopsTheLoop) {
  callInside([] { raise(SIGINT); });
  EXPECT_EQ(loop_.run(), C_RESULT_OK);
}

TEST_F(EventLoopTest, TerminationStopsTheLoop) {
  callInside([] { raise(SIGTERM); });
  EXPECT_EQ(loop_.run(), C_RESULT_OK);
}

TEST_F(EventLoopTest, SignalsAreCaughtOnlyWhileRunning) {
  struct sigaction before = {};
  struct sigaction during = {};
  struct sigaction after = {};
  sigaction(SIGTERM, nullptr, &before);
  callInside([&] {
    sigaction(SIGTERM, nullptr, &during);
    loop_.stop();
  });
  loop_.run();
  sigaction(SIGTERM, nullptr, &after);
  EXPECT_EQ(before.sa_handler, SIG_DFL);
  EXPECT_NE(during.sa_handler, SIG_DFL);
  EXPECT_EQ(after.sa_handler, SIG_DFL);
}

TEST_F(EventLoopTest, StoppedIsCalledBeforeRunReturns) {
  bool stopped = false;
  loop_.callWhenStopped([&] { stopped = true; });
  callInside([this, &stopped] {
    EXPECT_FALSE(stopped);
    loop_.stop();
  });
  loop_.run();
  EXPECT_TRUE(stopped);
}

TEST_F(EventLoopTest, SecondSignalDoesNotBreakOffTheStop) {
  bool stopped = false;
  loop_.callWhenStopped([&] {
    raise(SIGTERM);
    stopped = true;
  });
  callInside([] { raise(SIGTERM); });
  EXPECT_EQ(loop_.run(), C_RESULT_OK);
  EXPECT_TRUE(stopped);
}

TEST_F(EventLoopTest, RunInsideACallbackIsRefused) {
  int result = 0;
  callInside([&] {
    result = loop_.run();
    loop_.stop();
  });
  EXPECT_EQ(loop_.run(), C_RESULT_OK);
  EXPECT_EQ(result, C_RESULT_REDUNDANT);
}

TEST_F(EventLoopTest, LoopMayRunAgain) {
  runUntilIdle();
  pipe_.put();
  loop_.addFd(pipe_.reading(), C_LOOP_READ | C_LOOP_ONCE, &count_);
  runUntilIdle();
  EXPECT_EQ(calls_, 1);
}

TEST_F(EventLoopTest, SignalToAForkedProcessEndsThatAlone) {
  int status = 0;
  callInside([&] {
    const pid_t child = fork();
    if (child == 0) {
      raise(SIGTERM);
      _exit(0);
    }
    EXPECT_EQ(waitpid(child, &status, 0), child);
    callInside([&] {
      calls_++;
      loop_.stop();
    });
  });
  loop_.run();
  EXPECT_TRUE(WIFSIGNALED(status));
  EXPECT_EQ(calls_, 1);
}

TEST(EventLoopHeartbeatTest, SlowHandlerIsReportedWithItsDescriptor) {
  static Heartbeat::TimePoint now;
  RecordingLog log;
  Heartbeat heartbeat(log, std::chrono::milliseconds(10), [] { return now; });
  EventBase base(log);
  Registry registry(heartbeat);
  EventLoop loop(base, registry);
  const Pipe pipe;
  Handler slow([&](short, int) {
    now += std::chrono::milliseconds(25);
    loop.stop();
  });
  pipe.put();
  loop.addFd(pipe.reading(), C_LOOP_READ, &slow);
  loop.run();
  EXPECT_EQ(log.records,
            std::vector<std::string>{"4 heartbeat: the callback host::Handler of fd " +
                                     std::to_string(pipe.reading()) + " held the loop for 25 ms"});
}

}  // namespace

}  // namespace host
