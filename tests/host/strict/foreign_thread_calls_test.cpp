// SPDX-License-Identifier: MIT
#include "host/strict/foreign_thread_calls.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/strict/misuse.h"
#include "tests/host/support/open_descriptors.h"
#include "tests/host/support/running_loop.h"

namespace host {
namespace {

class ForeignThreadCallsTest : public LoopFixture {
 protected:
  Misuse misuse_{log_, false};
};

TEST_F(ForeignThreadCallsTest, CallIsReportedByTheLoop) {
  ForeignThreadCalls calls(misuse_, services_.base);
  calls.add(Operation::kSave);
  EXPECT_EQ(log_.records, std::vector<std::string>());
  stopWhenIdle();
  loop_.run();
  ASSERT_EQ(log_.records.size(), 1U);
  EXPECT_EQ(log_.records[0].rfind("4 strict: save is called on another thread than the loop's", 0), 0U)
      << log_.records[0];
}

TEST_F(ForeignThreadCallsTest, CallIsReportedAtTheEndIfTheLoopDoesNotRun) {
  {
    ForeignThreadCalls calls(misuse_, services_.base);
    calls.add(Operation::kSave);
  }
  EXPECT_EQ(log_.records.size(), 1U);
}

TEST_F(ForeignThreadCallsTest, DescriptorIsClosed) {
  const std::size_t before = openDescriptors();
  {
    const ForeignThreadCalls calls(misuse_, services_.base);
    EXPECT_EQ(openDescriptors(), before + 1);
  }
  EXPECT_EQ(openDescriptors(), before);
}

}  // namespace

}  // namespace host
