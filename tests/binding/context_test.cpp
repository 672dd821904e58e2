// SPDX-License-Identifier: MIT
// Obtaining and releasing the process-wide context.
#include "tests/support/recording_test.h"

namespace {

using ContextTest = UnopenedContextTest;

TEST_F(ContextTest, IsTheInstanceOfTheContextLibrary) {
  EXPECT_EQ(getContext(), &context);
}

TEST_F(ContextTest, GetInstanceReceivesNull) {
  getContext();
  EXPECT_EQ(calls(), Calls({"getInstance(null)"}));
}

TEST_F(ContextTest, IsObtainedOnce) {
  IContext* first = getContext();
  EXPECT_EQ(getContext(), first);
  EXPECT_EQ(calls(), Calls({"getInstance(null)"}));
}

TEST_F(ContextTest, IsKeptEvenIfTheLibraryWouldReturnAnotherInstance) {
  RecordingContext other(log);
  getContext();
  proxy.instance = &other;
  EXPECT_EQ(getContext(), &context);
}

TEST_F(ContextTest, IsRequestedAgainAfterANullInstance) {
  proxy.instance = nullptr;
  EXPECT_EQ(getContext(), nullptr);
  EXPECT_EQ(getContext(), nullptr);
  EXPECT_EQ(calls(), Calls({"getInstance(null)", "getInstance(null)"}));

  proxy.instance = &context;
  EXPECT_EQ(getContext(), &context);
}

TEST_F(ContextTest, ReleasePassesTheInstanceToTheLibrary) {
  getContext();
  calls();
  releaseContext(nullptr);
  EXPECT_EQ(calls(), Calls({"relInstance(object)"}));
  EXPECT_EQ(proxy.released, std::vector<void*>({&context}));
}

TEST_F(ContextTest, ReleaseIgnoresItsArgument) {
  RecordingContext other(log);
  getContext();
  releaseContext(&other);
  EXPECT_EQ(proxy.released, std::vector<void*>({&context}));
}

TEST_F(ContextTest, IsObtainedAgainAfterRelease) {
  RecordingContext other(log);
  getContext();
  releaseContext(&other);
  calls();

  proxy.instance = &other;
  EXPECT_EQ(getContext(), &other);
  EXPECT_EQ(calls(), Calls({"getInstance(null)"}));
  releaseContext(nullptr);
}

TEST_F(ContextTest, ReleaseBeforeTheFirstUseDoesNotOpenTheLibrary) {
  releaseContext(nullptr);
  EXPECT_EQ(calls(), Calls());
  EXPECT_EQ(getContext(), &context);
}

TEST_F(ContextTest, ReleaseAfterANullInstancePassesNullToTheLibrary) {
  proxy.instance = nullptr;
  getContext();
  calls();
  releaseContext(nullptr);
  EXPECT_EQ(calls(), Calls({"relInstance(null)"}));
}

TEST_F(ContextTest, SecondReleaseDoesNothing) {
  getContext();
  releaseContext(nullptr);
  calls();
  releaseContext(nullptr);
  EXPECT_EQ(calls(), Calls());
}

}  // namespace
