// SPDX-License-Identifier: MIT
#include "contextctl/inspect/report.h"

#include <sstream>

#include <gtest/gtest.h>

namespace contextctl {
namespace {

std::string jsonOf(const Report& report) {
  std::ostringstream out;
  printJson(report, out);
  return out.str();
}

TEST(ReportTest, JsonHasEveryVerdictAndSlot) {
  const Report report{"a.so",
                      "b.so",
                      {{Verdict::kOk, "s", "1"},
                       {Verdict::kNote, "s", "2"},
                       {Verdict::kWarning, "s", "3"},
                       {Verdict::kNo, "s", "4"}},
                      {{1, "init", "A::init()"}, {2, "", ""}}};
  EXPECT_EQ(jsonOf(report),
            "{\"library\":\"a.so\",\"against\":\"b.so\",\"fits\":false,\"findings\":["
            "{\"verdict\":\"ok\",\"subject\":\"s\",\"text\":\"1\"},"
            "{\"verdict\":\"note\",\"subject\":\"s\",\"text\":\"2\"},"
            "{\"verdict\":\"warning\",\"subject\":\"s\",\"text\":\"3\"},"
            "{\"verdict\":\"no\",\"subject\":\"s\",\"text\":\"4\"}],"
            "\"slots\":[{\"position\":1,\"operation\":\"init\",\"symbol\":\"A::init()\"},"
            "{\"position\":2,\"operation\":\"\",\"symbol\":\"\"}]}\n");
}

TEST(ReportTest, JsonIsPrintableUtf8) {
  const Report report{"\xff\x1b\x7f\xc2\x9b", "", {}, {}};
  EXPECT_EQ(
      jsonOf(report),
      "{\"library\":\"\xef\xbf\xbd\\u001b\\u007f\\u009b\",\"against\":\"\",\"fits\":true,\"findings\":[],"
      "\"slots\":[]}\n");
}

TEST(ReportTest, APositionThatIsNeverCalledHasADash) {
  std::ostringstream out;
  print({"a", "b", {{Verdict::kOk, "s", "t"}}, {{1, "", "f"}}}, out);
  EXPECT_EQ(out.str(),
            "a, to fit b\n"
            "VERDICT  SUBJECT  FINDING\n"
            "ok       s        t\n"
            "\n"
            "POSITION  OPERATION  SYMBOL\n"
            "1         -          f\n"
            "\n"
            "It fits.\n");
}

}  // namespace
}  // namespace contextctl
