// SPDX-License-Identifier: MIT
// A mistake that a service makes without end must not fill the log; its own records are all written.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/host/c_interface/c_interface_fixture.h"

namespace host {
namespace {

class CRepeatedMessagesTest : public CInterfaceFixture {
 protected:
  CRepeatedMessagesTest() { initWith("{}", {"--strict", "--clock", "virtual"}); }
};

TEST_F(CRepeatedMessagesTest, RepeatedMisuseIsCounted) {
  for (int i = 0; i < 1000; i++) c_heartbeat_unlock();
  c_log_record("m", C_LOG_INFO, "end");
  const std::vector<std::string> lines = records();
  ASSERT_EQ(lines.size(), 3U) << folder_.read("log");
  EXPECT_EQ(lines[0].rfind("warning strict: ", 0), 0U) << lines[0];
  EXPECT_EQ(lines[1], "warning strict: last message repeated 999 times");
  EXPECT_EQ(lines[2], "info m: end");
}

TEST_F(CRepeatedMessagesTest, EachRecordOfTheServiceIsWritten) {
  for (int i = 0; i < 3; i++) c_log_record("m", C_LOG_INFO, "tick");
  EXPECT_EQ(records(), std::vector<std::string>(3, "info m: tick"));
}

TEST_F(CRepeatedMessagesTest, EachLineOfACommandIsWritten) {
  char format[] = "for i in 1 2 3; do echo %s; done";
  EXPECT_EQ(c_popen_call(format, "one"), 0);
  EXPECT_EQ(records(), std::vector<std::string>(3, "info command: one"));
}

}  // namespace

}  // namespace host
