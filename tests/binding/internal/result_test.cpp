// SPDX-License-Identifier: MIT
#include "binding/result.h"

#include <limits>

#include <gtest/gtest.h>

namespace {

TEST(ErrorTextTest, EachCodeHasItsText) {
  EXPECT_STREQ(errorText(0), "is ok!");
  EXPECT_STREQ(errorText(-1016), "userdata is null?");
  EXPECT_STREQ(errorText(-1017), "redundancy config!");
  EXPECT_STREQ(errorText(-1018), "memory out!");
  EXPECT_STREQ(errorText(-1019), "not find!");
  EXPECT_STREQ(errorText(-1020), "time out!");
  EXPECT_STREQ(errorText(-1021), "call system function failed!");
  EXPECT_STREQ(errorText(-1022), "not init!");
  EXPECT_STREQ(errorText(-1023), "param error!");
}

TEST(ErrorTextTest, OtherCodesAreUnknown) {
  constexpr int kLowest = std::numeric_limits<int>::min();
  constexpr int kHighest = std::numeric_limits<int>::max();
  for (const int code : {1, -1, 1016, 1023, -1015, -1024, kLowest, kHighest}) {
    EXPECT_STREQ(errorText(code), "unknow error!") << code;
  }
}

TEST(ErrorTextTest, PublicCodesHaveTheNumbersOfTheFramework) {
  EXPECT_EQ(C_RESULT_OK, 0);
  EXPECT_EQ(C_RESULT_NO_USERDATA, -1016);
  EXPECT_EQ(C_RESULT_REDUNDANT, -1017);
  EXPECT_EQ(C_RESULT_NO_MEMORY, -1018);
  EXPECT_EQ(C_RESULT_NOT_FOUND, -1019);
  EXPECT_EQ(C_RESULT_TIMEOUT, -1020);
  EXPECT_EQ(C_RESULT_SYSTEM_CALL, -1021);
  EXPECT_EQ(C_RESULT_NOT_INIT, -1022);
  EXPECT_EQ(C_RESULT_PARAM, -1023);
  EXPECT_EQ(C_RESULT_NO_CALLBACK, -1024);
}

}  // namespace
