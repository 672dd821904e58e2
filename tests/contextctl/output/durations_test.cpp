// SPDX-License-Identifier: MIT
#include "contextctl/output/durations.h"

#include <gtest/gtest.h>

namespace contextctl {
namespace {

constexpr double kDay = 86400000;

TEST(DurationsTest, MillisecondsHaveThreeDecimals) {
  EXPECT_EQ(millisecondsText(0.30000000000000004), "0.300");
}

TEST(DurationsTest, UptimeOfLessThanADayIsAClock) {
  EXPECT_EQ(uptimeText(0), "00:00:00");
  EXPECT_EQ(uptimeText(kDay - 1), "23:59:59");
}

TEST(DurationsTest, UptimeOfOneDayIsSingular) {
  EXPECT_EQ(uptimeText(kDay), "1 day 00:00:00");
}

TEST(DurationsTest, UptimeOfSeveralDaysIsPlural) {
  EXPECT_EQ(uptimeText(2 * kDay + 61000), "2 days 00:01:01");
}

TEST(DurationsTest, SecondsHaveOnlyTheDecimalsTheyNeed) {
  EXPECT_EQ(secondsText(10), "10 s");
  EXPECT_EQ(secondsText(0.5), "0.5 s");
}

}  // namespace
}  // namespace contextctl
