// SPDX-License-Identifier: MIT
// Diagnostics sent to the context.
#include <string>

#include "tests/support/recording_test.h"

namespace {

using DiagnosticsTest = RecordingTest;
using FirstDiagnosticTest = UnopenedContextTest;

TEST_F(DiagnosticsTest, FormattedTextReachesTheContext) {
  const char* file = "here.c";
  c_debug_out(file, 12, "%s=%d", "speed", -100);
  ASSERT_EQ(context.diagnostics.size(), 1U);
  EXPECT_EQ(context.diagnostics[0].file, file);
  EXPECT_EQ(context.diagnostics[0].line, 12);
  EXPECT_EQ(context.diagnostics[0].text, "speed=-100");
}

TEST_F(DiagnosticsTest, FileMayBeNull) {
  c_debug_out(nullptr, -1, "%s", "text");
  EXPECT_EQ(calls(), Calls({"context.debugOut(null, 'text')"}));
}

TEST_F(DiagnosticsTest, ReturnsTheResultOfTheContext) {
  log.results["context.debugOut"] = -77;
  EXPECT_EQ(c_debug_out("here.c", 1, "text"), -77);
}

TEST_F(DiagnosticsTest, TextOf1022CharactersIsNotTruncated) {
  const std::string text(1022, 'x');
  c_debug_out("here.c", 1, "%s", text.c_str());
  EXPECT_EQ(context.diagnostics.at(0).text, text);
}

TEST_F(DiagnosticsTest, TextOf1023CharactersIsTruncatedTo1022) {
  const std::string text = std::string(1022, 'x') + 'y';
  c_debug_out("here.c", 1, "%s", text.c_str());
  EXPECT_EQ(context.diagnostics.at(0).text, std::string(1022, 'x'));
}

TEST_F(DiagnosticsTest, LongerTextIsTruncatedTo1022Characters) {
  const std::string text(5000, 'x');
  c_debug_out("here.c", 1, "%s%s", text.c_str(), text.c_str());
  EXPECT_EQ(context.diagnostics.at(0).text, std::string(1022, 'x'));
}

TEST_F(DiagnosticsTest, ContextMayReportWhileItReceivesADiagnostic) {
  bool nested = false;
  log.on_call = [&nested](const std::string&) {
    if (!nested) {
      nested = true;
      c_debug_out("inner.c", 2, "inner %d", 2);
    }
  };
  c_debug_out("outer.c", 1, "outer %d", 1);
  EXPECT_EQ(calls(),
            Calls({"context.debugOut('outer.c', 'outer 1')", "context.debugOut('inner.c', 'inner 2')"}));
}

TEST_F(DiagnosticsTest, TextIsDiscardedWithoutAContext) {
  proxy.instance = nullptr;
  releaseContext(nullptr);
  EXPECT_EQ(c_debug_out("here.c", 1, "text %d", 1), 0);
  EXPECT_TRUE(context.diagnostics.empty());
}

TEST_F(FirstDiagnosticTest, ObtainsTheContext) {
  c_debug_out("here.c", 1, "text");
  EXPECT_EQ(calls(), Calls({"getInstance(null)", "context.debugOut('here.c', 'text')"}));
}

}  // namespace
