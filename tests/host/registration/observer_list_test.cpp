// SPDX-License-Identifier: MIT
#include "host/registration/observer_list.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/host/support/services.h"

namespace host {
namespace {

struct Observer {
  std::string name;
  std::function<void()> then = [] {};
};

int g_comparisons = 0;  // of topics and of observers

struct Topic {
  int number;
  bool operator==(const Topic& other) const {
    g_comparisons++;
    return number == other.number;
  }
};

struct CountingLess {
  bool operator()(const Observer* a, const Observer* b) const {
    g_comparisons++;
    return std::less<>()(a, b);
  }
};

}  // namespace

}  // namespace host

template <>
struct std::hash<host::Topic> {
  std::size_t operator()(const host::Topic& topic) const { return std::hash<int>()(topic.number); }
};

namespace host {
namespace {

class ObserverListTest : public testing::Test {
 protected:
  void add(int topic, Observer& observer) {
    list_.add({topic}, &observer, registry_.add(RegistrationKind::kEvent, std::to_string(topic), {}));
  }

  // The names of those that are called, in their order.
  std::string called(int topic) {
    std::string names;
    list_.notify({topic}, [&](Observer& observer) {
      names += observer.name;
      const std::function<void()> then = observer.then;
      then();
      return 0;
    });
    return names;
  }

  // The comparisons that an operation makes.
  template <typename Operation>
  static int comparisonsOf(Operation operation) {
    g_comparisons = 0;
    operation();
    return g_comparisons;
  }

  Services services_;
  Registry& registry_ = services_.registry;
  ObserverList<Topic, Observer, CountingLess> list_;
  Observer a_{"a"};
  Observer b_{"b"};
  Observer c_{"c"};
};

TEST_F(ObserverListTest, ObserversAreCalledInOrderOfRegistration) {
  for (Observer* observer : {&c_, &a_, &b_, &a_}) add(1, *observer);
  add(2, b_);
  EXPECT_EQ(called(1), "caba");
  EXPECT_EQ(called(2), "b");
  EXPECT_EQ(called(3), "");
}

TEST_F(ObserverListTest, OldestEntryIsRemovedFirst) {
  for (Observer* observer : {&a_, &b_, &a_, &c_, &a_}) add(1, *observer);
  EXPECT_TRUE(list_.remove({1}, &a_));
  EXPECT_EQ(called(1), "baca");
  EXPECT_TRUE(list_.remove({1}, &a_));
  EXPECT_EQ(called(1), "bca");
  EXPECT_TRUE(list_.remove({1}, &a_));
  EXPECT_FALSE(list_.remove({1}, &a_));
  EXPECT_EQ(called(1), "bc");
}

TEST_F(ObserverListTest, EntriesOfOtherTopicsAndObserversStay) {
  add(1, a_);
  add(2, a_);
  EXPECT_FALSE(list_.remove({1}, &b_));
  EXPECT_FALSE(list_.remove({3}, &a_));
  EXPECT_TRUE(list_.remove({1}, &a_));
  EXPECT_EQ(called(1), "");
  EXPECT_EQ(called(2), "a");
}

TEST_F(ObserverListTest, RemovalEndsTheRegistration) {
  add(1, a_);
  list_.remove({1}, &a_);
  EXPECT_TRUE(registry_.registrations().empty());
}

TEST_F(ObserverListTest, ObserverMayRemoveItself) {
  for (Observer* observer : {&a_, &b_, &c_}) add(1, *observer);
  b_.then = [this] { list_.remove({1}, &b_); };
  EXPECT_EQ(called(1), "abc");
  EXPECT_EQ(called(1), "ac");
}

TEST_F(ObserverListTest, OnlyObserverMayRemoveItself) {
  add(1, a_);
  a_.then = [this] { list_.remove({1}, &a_); };
  EXPECT_EQ(called(1), "a");
  EXPECT_EQ(called(1), "");
}

TEST_F(ObserverListTest, ObserverMayRemoveThoseBeforeAndAfterIt) {
  for (Observer* observer : {&a_, &b_, &c_}) add(1, *observer);
  b_.then = [this] {
    list_.remove({1}, &a_);
    list_.remove({1}, &c_);
  };
  EXPECT_EQ(called(1), "ab");
  EXPECT_EQ(called(1), "b");
}

TEST_F(ObserverListTest, AddedObserverIsCalledTheNextTime) {
  add(1, a_);
  a_.then = [this] {
    a_.then = [] {};
    add(1, b_);
  };
  EXPECT_EQ(called(1), "a");
  EXPECT_EQ(called(1), "ab");
}

TEST_F(ObserverListTest, ObserverThatIsRemovedAndAddedAgainIsCalledTheNextTime) {
  add(1, a_);
  a_.then = [this] {
    list_.remove({1}, &a_);
    add(1, a_);
  };
  EXPECT_EQ(called(1), "a");
  EXPECT_EQ(called(1), "a");
}

TEST_F(ObserverListTest, NotifyTellsWhetherAllCallsSucceeded) {
  add(1, a_);
  add(1, b_);
  EXPECT_TRUE(list_.notify({1}, [](Observer&) { return -1; }));
  std::string names;
  EXPECT_FALSE(list_.notify({1}, [&](Observer& observer) {
    names += observer.name;
    if (observer.name == "a") throw 5;
    return 0;
  }));
  EXPECT_EQ(names, "ab");
}

constexpr int kMany = 100000;

TEST_F(ObserverListTest, RemovalIsCheapAmongManyObserversOfTheTopic) {
  std::vector<Observer> many(kMany);
  for (Observer& observer : many) add(1, observer);
  for (Observer* observer : {&many.front(), &many[kMany / 2], &many.back()}) {
    EXPECT_LE(comparisonsOf([&] { list_.remove({1}, observer); }), 50);
  }
}

TEST_F(ObserverListTest, RemovalIsCheapForAnObserverWithManyEntries) {
  for (int i = 0; i < kMany; i++) add(1, a_);
  EXPECT_LE(comparisonsOf([&] { list_.remove({1}, &a_); }), 50);
}

TEST_F(ObserverListTest, OtherTopicsCostNothing) {
  for (int i = 0; i < kMany; i++) add(i, a_);
  EXPECT_LE(comparisonsOf([&] { list_.remove({kMany - 1}, &a_); }), 50);
  EXPECT_LE(comparisonsOf([&] { called(kMany / 2); }), 50);
}

}  // namespace

}  // namespace host
