// SPDX-License-Identifier: MIT
// The host context's own messages do not fill the log when they repeat.
#include <chrono>
#include <memory>
#include <regex>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/clock/clock.h"
#include "host/include/cpp2c_host.h"
#include "host/log/log_service.h"
#include "tests/support/temporary_folder.h"

namespace host {
namespace {

using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::seconds;

using Lines = std::vector<std::string>;

class RepeatedMessagesTest : public testing::Test {
 protected:
  void say(const char* text, int times = 1) {
    for (int i = 0; i < times; i++) log_->messages().record("m", C_LOG_WARNING, text);
  }

  // Says it each `period`, the first time after one period.
  void sayEach(Clock::Duration period, const char* text, int times) {
    for (int i = 0; i < times; i++) {
      wait(period);
      say(text);
    }
  }

  void wait(Clock::Duration time) { clock_.reach(clock_.now() + time); }

  const Lines& published() const { return published_; }

 private:
  std::unique_ptr<LogService> newLog() {
    auto log = std::make_unique<LogService>(C_LOG_INFO, folder_.file("log"), clock_);
    log->onLine([this](const LogService::Line& line) { published_.push_back(line.text); });
    return log;
  }

  Lines published_;

 protected:
  TemporaryFolder folder_;
  Clock clock_{Clock::Kind::kVirtual};
  std::unique_ptr<LogService> log_ = newLog();  // publishes until it is destroyed
};

TEST_F(RepeatedMessagesTest, RepetitionsAreCountedUntilAnotherMessage) {
  say("no route", 1000000);
  EXPECT_EQ(published(), Lines{"no route"});
  say("route");
  EXPECT_EQ(published(), (Lines{"no route", "last message repeated 999999 times", "route"}));
}

TEST_F(RepeatedMessagesTest, OneRepetitionIsWrittenItself) {
  say("no route", 2);
  say("route");
  EXPECT_EQ(published(), (Lines{"no route", "no route", "route"}));
}

TEST_F(RepeatedMessagesTest, RecordOfTheProgramComesAfterTheCount) {
  say("no route", 3);
  log_->record("program", C_LOG_INFO, "hello");
  say("route");
  EXPECT_EQ(published(), (Lines{"no route", "last message repeated 2 times", "hello", "route"}));
}

TEST_F(RepeatedMessagesTest, DiagnosticComesAfterTheCount) {
  log_->debugSwitch(true);
  say("no route", 3);
  log_->debugOut("f.c", 1, "hello");
  EXPECT_EQ(published(), (Lines{"no route", "last message repeated 2 times", "hello"}));
}

TEST_F(RepeatedMessagesTest, CountIsWrittenAtTheEnd) {
  say("no route", 3);
  log_.reset();
  const std::string written = folder_.read("log");
  EXPECT_NE(written.find(" warning m: last message repeated 2 times\n"), std::string::npos) << written;
}

TEST_F(RepeatedMessagesTest, CountHasTheTimeOfTheLastRepetition) {
  sayEach(milliseconds(100), "no route", 5);
  wait(hours(1));
  say("route");
  const std::string written = folder_.read("log");
  static const std::regex kTime("([0-9]+):([0-9]+):([0-9]+)\\.([0-9]+) ");
  std::vector<int> times;
  for (std::sregex_iterator i(written.begin(), written.end(), kTime), end; i != end; ++i) {
    times.push_back(std::stoi((*i)[3]) * 1000 + std::stoi((*i)[4]));
  }
  ASSERT_EQ(times.size(), 3U) << written;
  EXPECT_EQ((times[1] - times[0] + 60000) % 60000, 400) << written;
}

TEST_F(RepeatedMessagesTest, RepetitionAfterASecondIsWrittenAtOnce) {
  say("no route");
  sayEach(milliseconds(999), "no route", 1);
  EXPECT_EQ(published().size(), 1U);
  sayEach(milliseconds(1), "no route", 1);
  EXPECT_EQ(published(), (Lines{"no route", "last message repeated 2 times"}));
}

TEST_F(RepeatedMessagesTest, IntervalsGrowTwofold) {
  say("no route");
  sayEach(milliseconds(500), "no route", 30);
  EXPECT_EQ(published(), (Lines{"no route", "last message repeated 2 times", "last message repeated 4 times",
                                "last message repeated 8 times", "last message repeated 16 times"}));
}

TEST_F(RepeatedMessagesTest, IntervalsGrowUpToAnHour) {
  say("no route");
  sayEach(seconds(1), "no route", 24 * 3600);
  EXPECT_GE(published().size(), 24U);
  EXPECT_LE(published().size(), 40U);
  EXPECT_EQ(published().back(), "last message repeated 3600 times");
}

TEST_F(RepeatedMessagesTest, MessageAfterMoreThanAnHourIsWrittenAtOnce) {
  say("no route");
  sayEach(seconds(1), "no route", 24 * 3600);
  sayEach(hours(1), "no route", 1);
  const std::size_t before = published().size();
  sayEach(hours(1) + milliseconds(1), "no route", 1);
  EXPECT_EQ(published().size(), before + 1);
  sayEach(seconds(1), "no route", 1);
  EXPECT_EQ(published().size(), before + 2) << "the intervals start again";
}

TEST_F(RepeatedMessagesTest, MessagesInTurnAreCountedEach) {
  for (int i = 0; i < 100000; i++) {
    say("no route");
    say("no memory");
  }
  EXPECT_EQ(published(), (Lines{"no route", "no memory"}));
  sayEach(seconds(1), "no route", 1);
  EXPECT_EQ(published(), (Lines{"no route", "no memory", "no route (repeated 100000 times)"}));
  say("route");
  EXPECT_EQ(published().back(), "route");
  log_.reset();
  EXPECT_EQ(published().back(), "no memory (repeated 99999 times)");
}

TEST_F(RepeatedMessagesTest, MessageInTurnWithRecordsOfTheProgramIsCounted) {
  for (int i = 0; i < 5; i++) {
    say("no route");
    log_->record("program", C_LOG_INFO, "tick");
  }
  EXPECT_EQ(published(), (Lines{"no route", "tick", "tick", "tick", "tick", "tick"}));
}

TEST_F(RepeatedMessagesTest, ThirtyTwoMessagesAreRemembered) {
  for (int round = 0; round < 3; round++) {
    for (int i = 0; i < 32; i++) say(std::to_string(i).c_str());
  }
  EXPECT_EQ(published().size(), 32U);
  say("one more");
  EXPECT_EQ((Lines{published().end() - 2, published().end()}), (Lines{"0 (repeated 2 times)", "one more"}));
  say("0");
  EXPECT_EQ(published().back(), "0");
}

TEST_F(RepeatedMessagesTest, OtherLevelOrModuleIsAnotherMessage) {
  ILog& messages = log_->messages();
  messages.record("a", C_LOG_WARNING, "text");
  messages.record("a", C_LOG_ERROR, "text");
  messages.record("b", C_LOG_ERROR, "text");
  EXPECT_EQ(published(), (Lines{"text", "text", "text"}));
}

TEST_F(RepeatedMessagesTest, MessageThatIsNotShownChangesNothing) {
  say("no route", 2);
  log_->messages().record("m", C_LOG_DEBUG, "detail");
  say("no route", 1);
  say("route");
  EXPECT_EQ(published(), (Lines{"no route", "last message repeated 2 times", "route"}));
}

TEST_F(RepeatedMessagesTest, RecordsOfTheProgramAreAllWritten) {
  for (int i = 0; i < 3; i++) log_->record("m", C_LOG_WARNING, "tick");
  EXPECT_EQ(published(), (Lines{"tick", "tick", "tick"}));
}

// Sending a line to a follower may itself cause a message.
TEST_F(RepeatedMessagesTest, MessageThatAFollowerCausesIsWritten) {
  Lines lines;
  log_->onLine([&](const LogService::Line& line) {
    lines.push_back(line.text);
    if (lines.size() == 3) say("cannot send");
  });
  say("no route", 3);
  say("route", 2);
  say("end");
  log_.reset();
  EXPECT_EQ(lines,
            (Lines{"no route", "last message repeated 2 times", "route", "cannot send", "end", "route"}));
}

}  // namespace

}  // namespace host
