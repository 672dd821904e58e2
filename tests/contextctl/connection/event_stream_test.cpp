// SPDX-License-Identifier: MIT
#include "contextctl/connection/event_stream.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace contextctl {
namespace {

std::vector<std::string> itemsOf(const std::vector<std::string>& pieces) {
  std::vector<std::string> items;
  EventStream stream([&](const std::string& item) { items.push_back(item); });
  for (const std::string& piece : pieces) stream.feed(piece);
  return items;
}

TEST(EventStreamTest, AnEmptyLineEndsAnItem) {
  EXPECT_EQ(itemsOf({"data: a\n\ndata: b\n"}), std::vector<std::string>{"a"});
}

TEST(EventStreamTest, LinesOfAnItemAreJoined) {
  EXPECT_EQ(itemsOf({"data: a\ndata:b\n\n"}), std::vector<std::string>{"a\nb"});
}

TEST(EventStreamTest, PiecesMayEndAnywhere) {
  EXPECT_EQ(itemsOf({"da", "ta: a\r", "\n\r\n"}), std::vector<std::string>{"a"});
}

TEST(EventStreamTest, OtherLinesAreSkipped) {
  EXPECT_EQ(itemsOf({": ping\n\nid: 1\ndata: a\n\n\n"}), std::vector<std::string>{"a"});
}

}  // namespace
}  // namespace contextctl
