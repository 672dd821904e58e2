// SPDX-License-Identifier: MIT
#include "binding/data_provider.h"
#include "binding/globals.h"
#include "tests/support/recording_test.h"

namespace {

void provideNothing(int /*id*/, const char* /*instance*/, const char* /*leaf*/, void* /*user*/,
                    void* /*handle*/) {}

using DataProviderStateTest = RecordingTest;

TEST_F(DataProviderStateTest, RegistrationFillsANewProvider) {
  int user = 0;
  c_cfm_data_provider_regist(7, provideNothing, &user);
  ASSERT_EQ(g_data_providers.size(), 1U);
  const __DataProvider& provider = *g_data_providers.front();
  EXPECT_EQ(provider.callback, provideNothing);
  EXPECT_EQ(provider.user, &user);
  EXPECT_EQ(provider.result, "");
}

TEST_F(DataProviderStateTest, ProvidersAreStoredInOrderOfRegistration) {
  int users[3] = {};
  for (int& user : users) c_cfm_data_provider_regist(7, provideNothing, &user);
  ASSERT_EQ(g_data_providers.size(), 3U);
  const int* expected = users;
  for (const __DataProvider* provider : g_data_providers) EXPECT_EQ(provider->user, expected++);
}

TEST_F(DataProviderStateTest, ProviderIsStoredAfterItsRegistrationWithTheService) {
  std::size_t listed = 99;
  log.on_call = [&listed](const std::string& call) {
    if (call == "cfm.registDataProvider(7, object)") listed = g_data_providers.size();
  };
  c_cfm_data_provider_regist(7, provideNothing, nullptr);
  EXPECT_EQ(listed, 0U);
  EXPECT_EQ(g_data_providers.size(), 1U);
}

TEST_F(DataProviderStateTest, ProviderIsStoredEvenIfTheServiceRejectedIt) {
  log.results["cfm.registDataProvider"] = -5;
  c_cfm_data_provider_regist(7, provideNothing, nullptr);
  EXPECT_EQ(g_data_providers.size(), 1U);
}

TEST_F(DataProviderStateTest, NothingIsStoredWithoutAConfigurationService) {
  context.missing.insert("getCfm");
  c_cfm_data_provider_regist(7, provideNothing, nullptr);
  EXPECT_TRUE(g_data_providers.empty());
}

TEST_F(DataProviderStateTest, TeardownEmptiesTheList) {
  c_cfm_data_provider_regist(7, provideNothing, nullptr);
  c_cfm_data_provider_regist(8, nullptr, nullptr);
  c_context_deinit();
  EXPECT_TRUE(g_data_providers.empty());
}

TEST_F(DataProviderStateTest, AnswerRemainsIfTheCallbackSetsNone) {
  __DataProvider provider;
  provider.callback = provideNothing;
  provider.result = "before";
  EXPECT_EQ(provider.dataGet(1, "A", "x"), "before");
  EXPECT_EQ(provider.result, "before");
}

TEST_F(DataProviderStateTest, AnswerRemainsIfThereIsNoCallback) {
  __DataProvider provider;
  provider.result = "before";
  EXPECT_EQ(provider.dataGet(1, "A", "x"), "");
  EXPECT_EQ(provider.result, "before");
}

}  // namespace
