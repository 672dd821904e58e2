// SPDX-License-Identifier: MIT
// Reference counts. They exist as long as the process, so each test uses its own names.
#include <set>
#include <string>
#include <vector>

#include "tests/support/recording_test.h"

namespace {

class ReferenceCountTest : public RecordingTest {
 protected:
  // Resets the counts to 0, so that a test can be repeated in one process.
  ~ReferenceCountTest() override {
    log.on_call = nullptr;
    for (const std::string& name : counted_) {
      while (reference_decrease(name.c_str()) > 0) {
      }
    }
  }

  int increase(const std::string& name) {
    counted_.insert(name);
    return reference_increase(name.c_str());
  }

  static int decrease(const std::string& name) { return reference_decrease(name.c_str()); }

 private:
  std::set<std::string> counted_;
};

TEST_F(ReferenceCountTest, FirstIncreaseReturnsOne) {
  EXPECT_EQ(increase("start"), 1);
}

TEST_F(ReferenceCountTest, CountsUpAndDownAndStopsAtZero) {
  std::vector<int> counts;
  for (int step = 0; step < 3; ++step) counts.push_back(increase("steps"));
  for (int step = 0; step < 4; ++step) counts.push_back(decrease("steps"));
  EXPECT_EQ(counts, std::vector<int>({1, 2, 3, 2, 1, 0, 0}));
}

TEST_F(ReferenceCountTest, DecreaseOfANewNameReturnsZero) {
  EXPECT_EQ(decrease("new"), 0);
  EXPECT_EQ(calls(), Calls({"context.debugOut('cpp2c', '-----str2=new,count=0')"}));
  EXPECT_EQ(increase("new"), 1);
}

TEST_F(ReferenceCountTest, NamesAreComparedByteForByte) {
  for (const char* name : {"A.B", "A.B.", "a.b", " A.B", "A.B ", "A.B\n"}) {
    SCOPED_TRACE(::testing::PrintToString(name));
    EXPECT_EQ(increase(name), 1);
  }
}

TEST_F(ReferenceCountTest, AnyNameIsCounted) {
  for (const char* name : {"", ".", "   ", "A.", ".A", "A..B", "A.B\t\r\n", "%s%n", "\xff\xfe"}) {
    SCOPED_TRACE(::testing::PrintToString(name));
    EXPECT_EQ(increase(name), 1);
    EXPECT_EQ(calls(), Calls({"context.debugOut('cpp2c', '-----str=" + std::string(name) + ",count=1')"}));
    EXPECT_EQ(decrease(name), 0);
    EXPECT_EQ(calls(), Calls({"context.debugOut('cpp2c', '-----str2=" + std::string(name) + ",count=0')"}));
  }
}

TEST_F(ReferenceCountTest, NameIsCopied) {
  char name[] = "copied1";
  reference_increase(name);
  name[6] = '2';
  EXPECT_EQ(increase("copied2"), 1);
  EXPECT_EQ(increase("copied1"), 2);
}

TEST_F(ReferenceCountTest, LongNamesAreDistinctAlthoughTheirDiagnosticsAreTruncated) {
  const std::string name(2000, 'x');
  EXPECT_EQ(increase(name + '1'), 1);
  EXPECT_EQ(increase(name + '2'), 1);
  const std::string report = "context.debugOut('cpp2c', '-----str=" + std::string(1022 - 9, 'x') + "')";
  EXPECT_EQ(calls(), Calls({report, report}));
}

TEST_F(ReferenceCountTest, EachChangeIsReported) {
  increase("A.1.");
  increase("A.1.");
  decrease("A.1.");
  EXPECT_EQ(calls(), Calls({"context.debugOut('cpp2c', '-----str=A.1.,count=1')",
                            "context.debugOut('cpp2c', '-----str=A.1.,count=2')",
                            "context.debugOut('cpp2c', '-----str2=A.1.,count=1')"}));
}

TEST_F(ReferenceCountTest, ResultOfTheDiagnosticIsIgnored) {
  log.results["context.debugOut"] = -5;
  EXPECT_EQ(increase("reported"), 1);
  EXPECT_EQ(decrease("reported"), 0);
}

TEST_F(ReferenceCountTest, CountIsStoredBeforeItIsReported) {
  increase("nested");
  int inner = 0;
  log.on_call = [this, &inner](const std::string&) {
    log.on_call = nullptr;
    inner = increase("nested");
  };
  EXPECT_EQ(increase("nested"), 2);
  EXPECT_EQ(inner, 3);
}

TEST_F(ReferenceCountTest, SurvivesTheTeardown) {
  c_context_init(0, 0);
  increase("lasting");
  c_context_deinit();
  c_context_init(0, 0);
  EXPECT_EQ(increase("lasting"), 2);
}

TEST_F(ReferenceCountTest, WorksWithoutAContext) {
  releaseContext(nullptr);
  proxy.instance = nullptr;
  EXPECT_EQ(increase("alone"), 1);
  EXPECT_EQ(increase("alone"), 2);
  EXPECT_EQ(decrease("alone"), 1);
}

}  // namespace
