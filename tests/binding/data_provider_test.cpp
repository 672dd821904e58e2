// SPDX-License-Identifier: MIT
// Data providers.
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>

#include "tests/support/recording_test.h"

namespace {

// The `user` of a provider: the last request, and how to answer it.
struct Requests {
  int count = 0;
  int id = 0;
  std::string instance;
  std::string leaf;
  void* handle = nullptr;
  std::function<void(void* handle)> answer = [](void*) {};
};

void provide(int id, const char* instance, const char* leaf, void* user, void* handle) {
  auto& requests = *static_cast<Requests*>(user);
  ++requests.count;
  requests.id = id;
  requests.instance = instance;
  requests.leaf = leaf;
  requests.handle = handle;
  requests.answer(handle);
}

std::function<void(void*)> wordAnswer(const char* type, std::int32_t word) {
  return [type, word](void* handle) {
    char data[sizeof word];
    std::memcpy(data, &word, sizeof word);
    c_cfm_data_provider_set(handle, type, data);
  };
}

std::function<void(void*)> textAnswer(const char* type, std::string text) {
  return [type, text](void* handle) {
    std::string data = text;
    c_cfm_data_provider_set(handle, type, data.data());
  };
}

class DataProviderTest : public RecordingTest {
 protected:
  // Registers a provider for `requests` and returns it as the service received it.
  IDyncDataProvider& registered() {
    c_cfm_data_provider_regist(7, provide, &requests);
    return *cfm.providers.back();
  }

  std::string ask() { return registered().dataGet(1, "A.1.", "x"); }

  Requests requests;
};

TEST_F(DataProviderTest, IsRegisteredWithTheService) {
  c_cfm_data_provider_regist(-7, provide, nullptr);
  EXPECT_EQ(calls(), Calls({"context.getCfm()", "cfm.registDataProvider(-7, object)"}));
}

TEST_F(DataProviderTest, EachRegistrationCreatesAProvider) {
  c_cfm_data_provider_regist(7, provide, &requests);
  c_cfm_data_provider_regist(7, provide, &requests);
  ASSERT_EQ(cfm.providers.size(), 2U);
  EXPECT_NE(cfm.providers[0], cfm.providers[1]);
}

TEST_F(DataProviderTest, RegistrationDoesNotCallTheCallback) {
  registered();
  EXPECT_EQ(requests.count, 0);
}

TEST_F(DataProviderTest, AnswersEvenIfTheServiceRejectedIt) {
  log.results["cfm.registDataProvider"] = -5;
  requests.answer = textAnswer("str", "value");
  EXPECT_EQ(ask(), "value");
}

TEST_F(DataProviderTest, WithoutAConfigurationServiceNothingIsRegistered) {
  context.missing.insert("getCfm");
  c_cfm_data_provider_regist(7, provide, &requests);
  EXPECT_EQ(calls(), Calls({"context.getCfm()"}));
}

TEST_F(DataProviderTest, WithoutAContextNothingIsRegistered) {
  releaseContext(nullptr);
  proxy.instance = nullptr;
  calls();
  c_cfm_data_provider_regist(7, provide, &requests);
  EXPECT_EQ(calls(), Calls({"getInstance(null)"}));
}

TEST_F(DataProviderTest, RequestReachesTheCallback) {
  registered().dataGet(-3, "A.1.", "Uptime");
  EXPECT_EQ(requests.count, 1);
  EXPECT_EQ(requests.id, -3);
  EXPECT_EQ(requests.instance, "A.1.");
  EXPECT_EQ(requests.leaf, "Uptime");
}

TEST_F(DataProviderTest, HandleIsTheProviderItself) {
  IDyncDataProvider& provider = registered();
  provider.dataGet(1, "", "");
  EXPECT_EQ(requests.handle, static_cast<void*>(&provider));
}

TEST_F(DataProviderTest, CallbackReceivesStringsUpToAnEmbeddedNul) {
  registered().dataGet(1, std::string("A\0B", 3), std::string("\0C", 2));
  EXPECT_EQ(requests.instance, "A");
  EXPECT_EQ(requests.leaf, "");
}

TEST_F(DataProviderTest, RequestDoesNotCallTheContext) {
  IDyncDataProvider& provider = registered();
  requests.answer = wordAnswer("int", 5);
  calls();
  provider.dataGet(1, "A", "x");
  EXPECT_EQ(calls(), Calls());
}

TEST_F(DataProviderTest, WordsAreReturnedAsSignedDecimals) {
  struct Row {
    const char* type;
    std::uint32_t word;
    const char* answer;
  };
  constexpr Row kRows[] = {
      {"int", 0, "0"},
      {"int", 42, "42"},
      {"int", 0xFFFFFFFB, "-5"},
      {"int", 0x7FFFFFFF, "2147483647"},
      {"int", 0x80000000, "-2147483648"},
      {"uint", 0, "0"},
      {"uint", 2147483647, "2147483647"},
      {"uint", 2147483648, "-2147483648"},
      {"uint", 3000000000, "-1294967296"},
      {"uint", 4294967295, "-1"},
      {"bool", 0, "0"},
      {"bool", 1, "1"},
      {"bool", 2, "2"},
      {"bool", 256, "256"},
      {"bool", 4294967295, "-1"},
  };
  IDyncDataProvider& provider = registered();
  for (const Row& row : kRows) {
    SCOPED_TRACE(std::string(row.type) + ' ' + std::to_string(row.word));
    requests.answer = wordAnswer(row.type, static_cast<std::int32_t>(row.word));
    EXPECT_EQ(provider.dataGet(1, "A", "x"), row.answer);
  }
}

TEST_F(DataProviderTest, OtherTypesAreReturnedAsText) {
  IDyncDataProvider& provider = registered();
  for (const char* type : {"str", "ipaddr", "macaddr", "pwd", "base64", "datetime", "float", "int ", " int",
                           "Int", "INT", "in", "uint8", "bool\n", "boolean", ""}) {
    SCOPED_TRACE(::testing::PrintToString(type));
    requests.answer = textAnswer(type, std::string("text for ") + type);
    EXPECT_EQ(provider.dataGet(1, "A", "x"), std::string("text for ") + type);
  }
}

TEST_F(DataProviderTest, UnalignedWordIsReturned) {
  requests.answer = [](void* handle) {
    char bytes[sizeof(std::int32_t) + 1];
    const std::int32_t word = -123456789;
    std::memcpy(bytes + 1, &word, sizeof word);
    c_cfm_data_provider_set(handle, "int", bytes + 1);
  };
  EXPECT_EQ(ask(), "-123456789");
}

TEST_F(DataProviderTest, TextIsNotTruncated) {
  requests.answer = textAnswer("str", std::string(100000, 'x'));
  EXPECT_EQ(ask(), std::string(100000, 'x'));
}

TEST_F(DataProviderTest, TextIsCopied) {
  requests.answer = [](void* handle) {
    char text[] = "value";
    c_cfm_data_provider_set(handle, "str", text);
    text[0] = 'X';
  };
  EXPECT_EQ(ask(), "value");
}

TEST_F(DataProviderTest, LastOfSeveralAnswersIsReturned) {
  requests.answer = [](void* handle) {
    wordAnswer("int", 1)(handle);
    textAnswer("str", "second")(handle);
    wordAnswer("bool", 3)(handle);
  };
  EXPECT_EQ(ask(), "3");
}

TEST_F(DataProviderTest, FirstRequestWithoutAnAnswerIsEmpty) {
  EXPECT_EQ(ask(), "");
  EXPECT_EQ(requests.count, 1);
}

TEST_F(DataProviderTest, RequestWithoutAnAnswerReturnsThePreviousOne) {
  IDyncDataProvider& provider = registered();
  requests.answer = textAnswer("str", "before");
  provider.dataGet(1, "A", "x");
  requests.answer = [](void*) {};
  EXPECT_EQ(provider.dataGet(2, "B", "y"), "before");
  EXPECT_EQ(provider.dataGet(3, "C", "z"), "before");
}

TEST_F(DataProviderTest, EmptyAnswerReplacesThePreviousOne) {
  IDyncDataProvider& provider = registered();
  requests.answer = textAnswer("str", "before");
  provider.dataGet(1, "A", "x");
  requests.answer = textAnswer("str", "");
  EXPECT_EQ(provider.dataGet(1, "A", "x"), "");
}

TEST_F(DataProviderTest, ShorterAnswerReplacesALongerOne) {
  IDyncDataProvider& provider = registered();
  requests.answer = wordAnswer("int", -2000000000);
  provider.dataGet(1, "A", "x");
  requests.answer = wordAnswer("int", 7);
  EXPECT_EQ(provider.dataGet(1, "A", "x"), "7");
}

TEST_F(DataProviderTest, ProvidersHaveSeparateAnswers) {
  IDyncDataProvider& first = registered();
  IDyncDataProvider& second = registered();
  requests.answer = textAnswer("str", "of the first");
  first.dataGet(1, "A", "x");
  requests.answer = [](void*) {};
  EXPECT_EQ(second.dataGet(1, "A", "x"), "");
  EXPECT_EQ(first.dataGet(1, "A", "x"), "of the first");
}

TEST_F(DataProviderTest, AnswerSetOutsideTheCallbackIsReturnedByTheNextRequest) {
  IDyncDataProvider& provider = registered();
  textAnswer("str", "early")(&provider);
  EXPECT_EQ(provider.dataGet(1, "A", "x"), "early");
}

TEST_F(DataProviderTest, CallbackMayRequestAnotherValue) {
  IDyncDataProvider& inner = registered();
  Requests outer;
  outer.answer = [&inner](void* handle) { textAnswer("str", inner.dataGet(2, "B", "y") + '!')(handle); };
  c_cfm_data_provider_regist(8, provide, &outer);
  requests.answer = textAnswer("str", "inner");
  EXPECT_EQ(cfm.providers.back()->dataGet(1, "A", "x"), "inner!");
}

TEST_F(DataProviderTest, NullHandleIsIgnored) {
  c_cfm_data_provider_set(nullptr, nullptr, nullptr);
  EXPECT_EQ(calls(), Calls());
}

TEST_F(DataProviderTest, NullUserReachesTheCallback) {
  static bool was_null;
  was_null = false;
  c_cfm_data_provider_regist(
      7, [](int, const char*, const char*, void* user, void*) { was_null = user == nullptr; }, nullptr);
  cfm.providers.back()->dataGet(1, "A", "x");
  EXPECT_TRUE(was_null);
}

TEST_F(DataProviderTest, WithoutACallbackTheAnswerIsEmpty) {
  c_cfm_data_provider_regist(7, nullptr, nullptr);
  EXPECT_EQ(cfm.providers.back()->dataGet(1, "A", "x"), "");
}

TEST_F(DataProviderTest, WithoutACallbackTheAnswerIsEmptyEvenIfOneWasSet) {
  c_cfm_data_provider_regist(7, nullptr, nullptr);
  IDyncDataProvider& provider = *cfm.providers.back();
  textAnswer("str", "set")(&provider);
  EXPECT_EQ(provider.dataGet(1, "A", "x"), "");
}

}  // namespace
