// SPDX-License-Identifier: MIT
// The default operations of a participant.
#include "boot/boot_context.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "boot/module.h"

namespace {

template <typename Participant>
class DefaultsTest : public testing::Test {
 protected:
  Participant participant;
  IBootContext& boot = participant;
};

using Participants = testing::Types<IBootContext, IModule>;
TYPED_TEST_SUITE(DefaultsTest, Participants, );

TYPED_TEST(DefaultsTest, StepsSucceed) {
  EXPECT_EQ(this->boot.onLoad(), 0);
  EXPECT_EQ(this->boot.onStart(), 0);
  EXPECT_EQ(this->boot.onRun(), 0);
  EXPECT_EQ(this->boot.onStop(), 0);
  EXPECT_EQ(this->boot.onUnload(), 0);
}

TYPED_TEST(DefaultsTest, DependencyIsAccepted) {
  EXPECT_EQ(this->boot.recvDependence("net"), 0);
  EXPECT_EQ(this->boot.recvDependence(""), 0);
}

TYPED_TEST(DefaultsTest, ConfigurationCalledMasterIsAccepted) {
  EXPECT_EQ(this->boot.onConfig("master", 5), 0);
  EXPECT_EQ(this->boot.onUnconfig("master", 5), 0);
}

TYPED_TEST(DefaultsTest, OtherConfigurationsAreNotForThisParticipant) {
  for (const char* name : {"Master", "MASTER", "master ", " master", "maste", "masters", "cfmd", ""}) {
    EXPECT_EQ(this->boot.onConfig(name, 0), 100) << '"' << name << '"';
    EXPECT_EQ(this->boot.onUnconfig(name, 0), 100) << '"' << name << '"';
  }
}

TYPED_TEST(DefaultsTest, ConfigurationNameIsComparedBeyondAnEmbeddedNul) {
  EXPECT_EQ(this->boot.onConfig(std::string("master\0", 7), 0), 100);
  EXPECT_EQ(this->boot.onUnconfig(std::string("master\0", 7), 0), 100);
}

TEST(BootContextTest, ParticipantsHaveNoData) {
  static_assert(sizeof(IBootContext) == sizeof(void*));
  static_assert(sizeof(IModule) == sizeof(void*));
  static_assert(IBootContext::kNotForMe == 100);
}

class Derived : public IModule {
 public:
  explicit Derived(bool& destroyed) : destroyed_(destroyed) {}
  ~Derived() override { destroyed_ = true; }

 private:
  bool& destroyed_;
};

TEST(BootContextTest, ParticipantIsDestroyedThroughItsBase) {
  bool destroyed = false;
  { std::unique_ptr<IBootContext> participant = std::make_unique<Derived>(destroyed); }
  EXPECT_TRUE(destroyed);
}

}  // namespace
