// SPDX-License-Identifier: MIT
#include "host/control/followers.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>

namespace host {
namespace {

TEST(FollowersTest, ClosedStreamsAreRemovedWhenAnotherIsAdded) {
  Followers<int> followers;
  const auto kept = std::make_shared<int>(0);
  for (int i = 0; i < 100; i++) followers.add(std::weak_ptr<Stream>(), [kept](int) { return std::string(); });
  EXPECT_EQ(kept.use_count(), 2);
}

}  // namespace

}  // namespace host
