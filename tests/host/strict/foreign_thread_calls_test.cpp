// SPDX-License-Identifier: MIT
#include "host/strict/foreign_thread_calls.h"

#include <sys/resource.h>

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/strict/misuse.h"
#include "tests/host/support/error_text.h"
#include "tests/host/support/open_descriptors.h"
#include "tests/host/support/running_loop.h"
#include "tests/host/support/without_standard_input.h"

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

TEST_F(ForeignThreadCallsTest, MissingDescriptorIsRefused) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer's check of virtual calls needs descriptors itself";
#endif
  rlimit limit = {};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
  const rlimit none = {0, limit.rlim_max};
  setrlimit(RLIMIT_NOFILE, &none);
  const std::string error = errorOf([this] { ForeignThreadCalls(misuse_, services_.base); });
  setrlimit(RLIMIT_NOFILE, &limit);
  EXPECT_EQ(error, "-1021 strict mode cannot watch for calls from other threads");
}

TEST_F(ForeignThreadCallsTest, CallIsReportedWithoutStandardInput) {
  const WithoutStandardInput without;
  ForeignThreadCalls calls(misuse_, services_.base);
  calls.add(Operation::kSave);
  stopWhenIdle();
  loop_.run();
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
