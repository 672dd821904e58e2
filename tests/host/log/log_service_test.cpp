// SPDX-License-Identifier: MIT
#include "host/log/log_service.h"

#include <regex>
#include <string>

#include <gtest/gtest.h>

#include "host/clock/clock.h"
#include "host/include/cpp2c_host.h"
#include "include_c"
#include "tests/host/support/error_text.h"
#include "tests/support/printed_text.h"
#include "tests/support/temporary_folder.h"

namespace host {
namespace {

// The lines without their times, which must have the right form.
std::string withoutTimes(const std::string& lines) {
  static const std::regex kTime("^[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}\\.[0-9]{3} ",
                                std::regex::ECMAScript | std::regex::multiline);
  return std::regex_replace(lines, kTime, "@");
}

class LogServiceTest : public testing::Test {
 protected:
  std::string written() const { return withoutTimes(folder_.read("log")); }

  TemporaryFolder folder_;
  Clock clock_;
  LogService log_{C_LOG_INFO, folder_.file("log"), clock_};
};

TEST_F(LogServiceTest, RecordHasTimeLevelModuleAndText) {
  EXPECT_EQ(log_.record("netd", C_LOG_ERROR, "no route"), C_RESULT_OK);
  EXPECT_EQ(written(), "@error netd: no route\n");
}

TEST_F(LogServiceTest, EveryLevelHasItsName) {
  LogService all(C_LOG_DEBUG, folder_.file("log"), clock_);
  for (int level = -1; level <= 8; level++) all.record("m", level, std::to_string(level).c_str());
  EXPECT_EQ(written(),
            "@critical m: -1\n@critical m: 0\n@critical m: 1\n@critical m: 2\n@error m: 3\n@warning m: 4\n"
            "@notice m: 5\n@info m: 6\n@debug m: 7\n@debug m: 8\n");
}

TEST_F(LogServiceTest, LessUrgentRecordsAreNotShown) {
  EXPECT_EQ(log_.record("m", C_LOG_DEBUG, "detail"), C_RESULT_OK);
  EXPECT_EQ(written(), "");
}

TEST_F(LogServiceTest, CriticalRecordsAreShownAtEveryLevel) {
  LogService least(C_LOG_CRITICAL, folder_.file("log"), clock_);
  least.record("m", 0, "shown");
  least.record("m", C_LOG_ERROR, "not shown");
  EXPECT_EQ(written(), "@critical m: shown\n");
}

TEST_F(LogServiceTest, OneRecordIsOneLine) {
  log_.record("a\nb", C_LOG_INFO, "one\ntwo\x1b[2J\n");
  EXPECT_EQ(written(), "@info a\\nb: one\\ntwo\\x1b[2J\n");
}

TEST_F(LogServiceTest, TextIsNoFormat) {
  log_.record("{}", C_LOG_INFO, "100 {} %s %v");
  EXPECT_EQ(written(), "@info {}: 100 {} %s %v\n");
}

TEST_F(LogServiceTest, FileIsAppendedTo) {
  log_.record("m", C_LOG_INFO, "old");
  LogService(C_LOG_INFO, folder_.file("log"), clock_).record("m", C_LOG_INFO, "new");
  EXPECT_EQ(written(), "@info m: old\n@info m: new\n");
}

TEST_F(LogServiceTest, NullIsRefused) {
  EXPECT_EQ(log_.record("m", C_LOG_INFO, nullptr), C_RESULT_PARAM);
  EXPECT_EQ(log_.debugOut(nullptr, 1, "x"), C_RESULT_PARAM);
  EXPECT_EQ(log_.debugOut("x", 1, nullptr), C_RESULT_PARAM);
}

TEST_F(LogServiceTest, DiagnosticsAreShownWhenSwitchedOn) {
  EXPECT_EQ(log_.debugOut("cpp2c", 1, "dropped"), C_RESULT_OK);
  log_.debugSwitch(true);
  EXPECT_EQ(log_.debugOut("cpp2c", 57, "c_cfm_str2bool: Leave: param error!\n"), C_RESULT_OK);
  log_.debugSwitch(false);
  log_.debugOut("cpp2c", 2, "dropped");
  EXPECT_EQ(written(), "@debug cpp2c:57: c_cfm_str2bool: Leave: param error!\n");
}

TEST_F(LogServiceTest, FolderOfTheFileIsMade) {
  LogService(C_LOG_INFO, folder_.file("new/log"), clock_).record("m", C_LOG_INFO, "text");
  EXPECT_EQ(withoutTimes(folder_.read("new/log")), "@info m: text\n");
}

TEST_F(LogServiceTest, FileThatCannotBeWrittenIsRefused) {
  EXPECT_EQ(errorOf([this] { LogService(C_LOG_INFO, folder_.path(), clock_); }),
            "-1021 " + folder_.path() + ": cannot be written: Is a directory");
}

TEST(LogServiceOnStandardErrorTest, WithoutAFileStandardErrorIsWritten) {
  PrintedText printed;
  LogService(C_LOG_INFO, "", Clock()).record("m", C_LOG_INFO, "text");
  EXPECT_EQ(withoutTimes(printed.standardError()), "@info m: text\n");
  EXPECT_EQ(printed.standardOutput(), "");
}

}  // namespace

}  // namespace host
