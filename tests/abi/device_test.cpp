// SPDX-License-Identifier: MIT
// The build for the device: 32-bit words, most significant byte first.
#include <cstdint>
#include <cstring>

#include <gtest/gtest.h>

namespace {

TEST(DeviceTest, WordsHave32Bits) {
  EXPECT_EQ(sizeof(void*), 4u);
  EXPECT_EQ(sizeof(long), 4u);
}

TEST(DeviceTest, MostSignificantByteComesFirst) {
  const std::uint32_t word = 0x01020304;
  unsigned char bytes[sizeof word];
  std::memcpy(bytes, &word, sizeof word);
  EXPECT_EQ(bytes[0], 1);
  EXPECT_EQ(bytes[3], 4);
}

}  // namespace
