// SPDX-License-Identifier: MIT
// More C functions in a process without a context library. None of them prints anything.
#include <gtest/gtest.h>

#include <cstdint>

#include "binding/dll_mgr.h"
#include "include_c"
#include "tests/support/printed_text.h"
#include "tests/support/unreadable_text.h"

namespace {

class WithoutContextTest : public ::testing::Test {
 protected:
  ~WithoutContextTest() override { c_context_deinit(); }

  void TearDown() override {
    EXPECT_EQ(getContext(), nullptr);
    EXPECT_EQ(printed_.standardOutput(), "");
    EXPECT_EQ(printed_.standardError(), "");
  }

 private:
  PrintedText printed_;
};

int failing() {
  ADD_FAILURE() << "a callback was called";
  return 0;
}

int failingVisit(int /*id*/, char* /*name*/, void* /*userdata*/, c_pass_fn3 /*pass_fn3*/,
                 c_pass_fn4 /*pass_fn4*/, void* /*arg*/) {
  return failing();
}

int countVisit(int /*id*/, char* /*name*/, void* /*userdata*/, c_pass_fn3 /*pass_fn3*/,
               c_pass_fn4 /*pass_fn4*/, void* arg) {
  return ++*static_cast<int*>(arg);
}

void failingProvider(int /*id*/, const char* /*instance*/, const char* /*leaf*/, void* /*user*/,
                     void* /*handle*/) {
  failing();
}

TEST_F(WithoutContextTest, TimerIsNotSet) {
  EXPECT_EQ(c_context_set_timer(1, 2, failing), 0);
}

TEST_F(WithoutContextTest, MasterObserverIsStored) {
  ModuleCallbacks table = {};
  EXPECT_EQ(c_context_regist_master_observer(&table), 0);
  EXPECT_NE(c_context_regist_master_observer(&table), 0);
}

TEST_F(WithoutContextTest, MasterObserverIsAcceptedAgainAfterTheTeardown) {
  ModuleCallbacks table = {};
  c_context_regist_master_observer(&table);
  c_context_deinit();
  EXPECT_EQ(c_context_regist_master_observer(&table), 0);
}

TEST_F(WithoutContextTest, NotifyDependsDoesNotReadTheName) {
  const UnreadableText name;
  c_context_notify_depends(name.c_str());
}

TEST_F(WithoutContextTest, SystemCallReturnsZeroWithoutFormatting) {
  const UnreadableText text;
  EXPECT_EQ(c_system_call("%s", text.c_str()), 0);
}

TEST_F(WithoutContextTest, SystemCall2FailsWithoutFormatting) {
  const UnreadableText text;
  char format[] = "%s";
  EXPECT_EQ(c_system_call2(format, text.c_str()), -1021);
}

TEST_F(WithoutContextTest, PopenCallReturnsZeroWithoutFormatting) {
  const UnreadableText text;
  char format[] = "%s";
  EXPECT_EQ(c_popen_call(format, text.c_str()), 0);
}

TEST_F(WithoutContextTest, LogRecordIsDiscardedWithoutFormatting) {
  const UnreadableText text;
  c_log_record(text.c_str(), 1, "%s", text.c_str());
}

TEST_F(WithoutContextTest, MemoryIsAllocated) {
  char* block = c_malloc(16, "here.c", 1);
  EXPECT_NE(block, nullptr);
  c_free(block);
}

TEST_F(WithoutContextTest, ParentNameIsFound) {
  char buf[16];
  EXPECT_EQ(c_cfm_get_parent_name("A.B.C", buf, sizeof buf), 0);
  EXPECT_STREQ(buf, "A.B.");
}

TEST_F(WithoutContextTest, GrandparentNameIsFound) {
  char buf[16];
  EXPECT_EQ(c_cfm_get_grand_name("A.B.C", buf, sizeof buf), 0);
  EXPECT_STREQ(buf, "A.");
}

TEST_F(WithoutContextTest, FullNameIsCutAtItsLastDot) {
  char name[] = "A.B";
  EXPECT_EQ(c_cfm_parent_fullname(name), 0);
  EXPECT_STREQ(name, "A");
}

TEST_F(WithoutContextTest, ParentNameWithoutABufferIsAParameterError) {
  EXPECT_EQ(c_cfm_get_parent_name("A.B", nullptr, 1), -1023);
}

TEST_F(WithoutContextTest, GrandparentNameWithoutABufferSizeIsAParameterError) {
  char buf[] = "A";
  EXPECT_EQ(c_cfm_get_grand_name("A.B", buf, 0), -1023);
  EXPECT_STREQ(buf, "A");
}

TEST_F(WithoutContextTest, CuttingANullNameIsAParameterError) {
  EXPECT_EQ(c_cfm_parent_fullname(nullptr), -1023);
}

TEST_F(WithoutContextTest, CuttingANameWithoutADotFails) {
  char name[] = "A";
  EXPECT_EQ(c_cfm_parent_fullname(name), -1019);
  EXPECT_STREQ(name, "A");
}

TEST_F(WithoutContextTest, RelativeWriteIsNotInitialised) {
  const std::int32_t word = 99;
  EXPECT_EQ(c_cfm_set_value_v2("A.B", "PARENT.PARENT.", "x", "int", &word, sizeof word, 0), -1022);
}

TEST_F(WithoutContextTest, RelativeReadIsNotInitialised) {
  std::int32_t word = 99;
  EXPECT_EQ(c_cfm_get_value_v2("A.B", "PARENT.PARENT.", "x", "int", &word, sizeof word), -1022);
  EXPECT_EQ(word, 99);
}

TEST_F(WithoutContextTest, RelativeWriteWithANullBaseIsAParameterError) {
  const std::int32_t word = 99;
  EXPECT_EQ(c_cfm_set_value_v2(nullptr, "", "x", "int", &word, sizeof word, 0), -1023);
}

TEST_F(WithoutContextTest, RelativeWriteWithNullDataIsAParameterError) {
  EXPECT_EQ(c_cfm_set_value_v2("A.", "", "x", "int", nullptr, sizeof(std::int32_t), 0), -1023);
}

TEST_F(WithoutContextTest, RelativeReadWithANullTypeIsAParameterError) {
  std::int32_t word = 99;
  EXPECT_EQ(c_cfm_get_value_v2("A.", "", "x", nullptr, &word, sizeof word), -1023);
}

TEST_F(WithoutContextTest, RelativeReadWithLengthZeroIsAParameterError) {
  std::int32_t word = 99;
  EXPECT_EQ(c_cfm_get_value_v2("A.", "", "x", "int", &word, 0), -1023);
}

TEST_F(WithoutContextTest, InstanceLookupVisitsNothing) {
  EXPECT_EQ(c_cfm_lookup_instance(5, failingVisit, nullptr, nullptr, nullptr), 0);
}

TEST_F(WithoutContextTest, InstanceLookupAcceptsANullVisit) {
  EXPECT_EQ(c_cfm_lookup_instance(5, nullptr, nullptr, nullptr, nullptr), 0);
}

TEST_F(WithoutContextTest, CacheLookupVisitsTheNames) {
  int visits = 0;
  EXPECT_EQ(c_context_init(0, 0), -1022);
  c_dbc_add_userdata(5, "A.1.", nullptr);
  c_dbc_lookup(5, countVisit, nullptr, nullptr, &visits);
  EXPECT_EQ(visits, 1);
}

TEST_F(WithoutContextTest, SettingAnAttributeIsNotInitialised) {
  EXPECT_EQ(c_cfm_set_attr(1, 2), -1022);
}

TEST_F(WithoutContextTest, GettingAnAttributeIsAParameterError) {
  int value = 99;
  EXPECT_EQ(c_cfm_get_attr(1, &value), -1023);
  EXPECT_EQ(value, 99);
}

TEST_F(WithoutContextTest, ReferencesAreCounted) {
  EXPECT_EQ(reference_increase("name"), 1);
  EXPECT_EQ(reference_increase("name"), 2);
  EXPECT_EQ(reference_decrease("name"), 1);
  EXPECT_EQ(reference_decrease("name"), 0);
}

TEST_F(WithoutContextTest, DataProviderIsNotCalled) {
  c_cfm_data_provider_regist(7, failingProvider, nullptr);
}

TEST_F(WithoutContextTest, DataProviderSetIgnoresANullHandle) {
  c_cfm_data_provider_set(nullptr, nullptr, nullptr);
}

}  // namespace
