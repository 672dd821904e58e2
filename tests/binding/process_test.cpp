// SPDX-License-Identifier: MIT
// Commands, log records and memory.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "tests/support/printed_text.h"
#include "tests/support/recording_test.h"
#include "tests/support/unreadable_text.h"

namespace {

int systemCall(const char* text) {
  return c_system_call("%s", text);
}

int systemCall2(const char* text) {
  char format[] = "%s";
  return c_system_call2(format, text);
}

int popenCall(const char* text) {
  char format[] = "%s";
  return c_popen_call(format, text);
}

// One of the three functions that run commands.
struct Command {
  const char* operation;
  int (*run)(const char* text);
};

class CommandTest : public RecordingTest, public ::testing::WithParamInterface<Command> {
 protected:
  // Runs `text` and returns the command that reached the context.
  Calls run(const std::string& text) {
    PrintedText quiet;
    GetParam().run(text.c_str());
    return calls();
  }

  Calls expected(const std::string& command) {
    return {"context." + std::string(GetParam().operation) + "('" + command + "')"};
  }
};

TEST_P(CommandTest, ReachesTheContext) {
  EXPECT_EQ(run("ls -l /"), expected("ls -l /"));
}

TEST_P(CommandTest, MayBeEmpty) {
  EXPECT_EQ(run(""), expected(""));
}

TEST_P(CommandTest, ArgumentIsNotUsedAsAFormat) {
  EXPECT_EQ(run("date +%s%n"), expected("date +%s%n"));
}

TEST_P(CommandTest, Of1021CharactersIsNotTruncated) {
  EXPECT_EQ(run(std::string(1021, 'x')), expected(std::string(1021, 'x')));
}

TEST_P(CommandTest, Of1022CharactersIsNotTruncated) {
  EXPECT_EQ(run(std::string(1021, 'x') + 'y'), expected(std::string(1021, 'x') + 'y'));
}

TEST_P(CommandTest, Of1023CharactersIsTruncatedTo1022) {
  EXPECT_EQ(run(std::string(1022, 'x') + 'y'), expected(std::string(1022, 'x')));
}

TEST_P(CommandTest, Of5000CharactersIsTruncatedTo1022) {
  EXPECT_EQ(run(std::string(5000, 'x')), expected(std::string(1022, 'x')));
}

TEST_P(CommandTest, IsNotFormattedWithoutAContext) {
  const UnreadableText text;
  releaseContext(nullptr);
  proxy.instance = nullptr;
  calls();
  GetParam().run(text.c_str());
  EXPECT_EQ(calls(), Calls({"getInstance(null)"}));
}

INSTANTIATE_TEST_SUITE_P(Process, CommandTest,
                         ::testing::Values(Command{"systemCall", systemCall},
                                           Command{"systemCall2", systemCall2},
                                           Command{"popenCall", popenCall}),
                         [](const auto& command) { return std::string(command.param.operation); });

using ProcessTest = RecordingTest;

TEST_F(ProcessTest, SystemCallFormatsTheCommand) {
  PrintedText printed;
  c_system_call("ping -c %d %s%%%c", 3, "host", '!');
  EXPECT_EQ(calls(), Calls({"context.systemCall('ping -c 3 host%!')"}));
}

TEST_F(ProcessTest, SystemCall2FormatsTheCommand) {
  char format[] = "ping -c %d %s%%%c";
  c_system_call2(format, 3, "host", '!');
  EXPECT_EQ(calls(), Calls({"context.systemCall2('ping -c 3 host%!')"}));
  EXPECT_STREQ(format, "ping -c %d %s%%%c");
}

TEST_F(ProcessTest, PopenCallFormatsTheCommand) {
  char format[] = "ping -c %d %s%%%c";
  c_popen_call(format, 3, "host", '!');
  EXPECT_EQ(calls(), Calls({"context.popenCall('ping -c 3 host%!')"}));
  EXPECT_STREQ(format, "ping -c %d %s%%%c");
}

TEST_F(ProcessTest, SystemCallPrintsTheCommandAndReturnsThePrintedLength) {
  PrintedText printed;
  EXPECT_EQ(c_system_call("ls"), 8);
  EXPECT_EQ(printed.standardOutput(), "cmd:ls\r\n");
  EXPECT_EQ(printed.standardError(), "");
}

TEST_F(ProcessTest, SystemCallPrintsAnEmptyCommand) {
  PrintedText printed;
  EXPECT_EQ(systemCall(""), 6);
  EXPECT_EQ(printed.standardOutput(), "cmd:\r\n");
}

TEST_F(ProcessTest, SystemCallPrintsTheTruncatedCommand) {
  PrintedText printed;
  EXPECT_EQ(systemCall(std::string(3000, 'x').c_str()), 1028);
  EXPECT_EQ(printed.standardOutput(), "cmd:" + std::string(1022, 'x') + "\r\n");
}

TEST_F(ProcessTest, SystemCallIgnoresTheResultOfTheContext) {
  PrintedText printed;
  log.results["context.systemCall"] = -5;
  EXPECT_EQ(c_system_call("ls"), 8);
}

TEST_F(ProcessTest, SystemCallPrintsAfterTheContextHasRunTheCommand) {
  PrintedText printed;
  log.on_call = [](const std::string&) { std::fputs("output\n", stdout); };
  c_system_call("ls");
  EXPECT_EQ(printed.standardOutput(), "output\ncmd:ls\r\n");
}

TEST_F(ProcessTest, SystemCall2ReturnsTheResultOfTheContextAndPrintsNothing) {
  PrintedText printed;
  log.results["context.systemCall2"] = -5;
  EXPECT_EQ(systemCall2("ls"), -5);
  EXPECT_EQ(printed.standardOutput(), "");
  EXPECT_EQ(printed.standardError(), "");
}

TEST_F(ProcessTest, PopenCallReturnsTheResultOfTheContextAndPrintsNothing) {
  PrintedText printed;
  log.results["context.popenCall"] = 256;
  EXPECT_EQ(popenCall("ls"), 256);
  EXPECT_EQ(printed.standardOutput(), "");
  EXPECT_EQ(printed.standardError(), "");
}

using LogRecordTest = RecordingTest;

TEST_F(LogRecordTest, ReachesTheLogService) {
  c_log_record("net", -3, "%s is %d", "speed", 100);
  EXPECT_EQ(calls(), Calls({"context.getLog()", "log.record('net', -3, 'speed is 100')"}));
}

TEST_F(LogRecordTest, MayHaveAnEmptyModuleAndText) {
  c_log_record("", 0, "%s", "");
  EXPECT_EQ(calls(), Calls({"context.getLog()", "log.record('', 0, '')"}));
}

TEST_F(LogRecordTest, ModuleIsNotTruncated) {
  const std::string module(500, 'm');
  c_log_record(module.c_str(), 1, "%s", "text");
  EXPECT_EQ(calls(), Calls({"context.getLog()", "log.record('" + module + "', 1, 'text')"}));
}

// Returns the text that the log service receives for `text`.
Calls recorded(const std::string& text) {
  return {"context.getLog()", "log.record('net', 1, '" + text + "')"};
}

TEST_F(LogRecordTest, TextOf77CharactersIsNotTruncated) {
  c_log_record("net", 1, "%s", std::string(77, 'x').c_str());
  EXPECT_EQ(calls(), recorded(std::string(77, 'x')));
}

TEST_F(LogRecordTest, TextOf78CharactersIsNotTruncated) {
  c_log_record("net", 1, "%s", (std::string(77, 'x') + 'y').c_str());
  EXPECT_EQ(calls(), recorded(std::string(77, 'x') + 'y'));
}

TEST_F(LogRecordTest, TextOf79CharactersIsTruncatedTo78) {
  c_log_record("net", 1, "%s", (std::string(78, 'x') + 'y').c_str());
  EXPECT_EQ(calls(), recorded(std::string(78, 'x')));
}

TEST_F(LogRecordTest, TextOf5000CharactersIsTruncatedTo78) {
  c_log_record("net", 1, "%s", std::string(5000, 'x').c_str());
  EXPECT_EQ(calls(), recorded(std::string(78, 'x')));
}

TEST_F(LogRecordTest, IsDiscardedWithoutFormattingIfThereIsNoLogService) {
  const UnreadableText text;
  context.missing.insert("getLog");
  c_log_record("net", 1, "%s", text.c_str());
  EXPECT_EQ(calls(), Calls({"context.getLog()"}));
}

TEST_F(LogRecordTest, IsDiscardedWithoutFormattingIfThereIsNoContext) {
  const UnreadableText text;
  releaseContext(nullptr);
  proxy.instance = nullptr;
  calls();
  c_log_record(text.c_str(), 1, "%s", text.c_str());
  EXPECT_EQ(calls(), Calls({"getInstance(null)"}));
}

TEST_F(LogRecordTest, PrintsNothing) {
  PrintedText printed;
  c_log_record("net", 1, "%s", "text");
  EXPECT_EQ(printed.standardOutput(), "");
  EXPECT_EQ(printed.standardError(), "");
}

using MemoryTest = RecordingTest;

bool allZero(const char* block, std::size_t size) {
  return std::all_of(block, block + size, [](char byte) { return byte == '\0'; });
}

TEST_F(MemoryTest, IsFilledWithZeros) {
  constexpr unsigned int kSizes[] = {1, 24, 512, 100000};
  for (const unsigned int size : kSizes) {
    SCOPED_TRACE(size);
    char* block = c_malloc(size, "here.c", 1);
    ASSERT_NE(block, nullptr);
    EXPECT_TRUE(allZero(block, size));
    c_free(block);
  }
}

TEST_F(MemoryTest, ReusedMemoryIsFilledWithZeros) {
  char* used = c_malloc(64, "here.c", 1);
  std::fill(used, used + 64, 'x');
  c_free(used);
  char* block = c_malloc(64, "here.c", 1);
  EXPECT_TRUE(allZero(block, 64));
  c_free(block);
}

TEST_F(MemoryTest, FileNameIsNotRead) {
  const UnreadableText file;
  char* block = c_malloc(8, file.c_str(), -1);
  EXPECT_NE(block, nullptr);
  c_free(block);
}

TEST_F(MemoryTest, OfSizeZeroIsWhatCallocReturns) {
  void* answer = std::malloc(0);
  char* block = c_malloc(0, "here.c", 1);
  EXPECT_EQ(block == nullptr, answer == nullptr);
  std::free(answer);
  c_free(block);
}

TEST_F(MemoryTest, ComesFromTheCAllocator) {
  char* block = c_malloc(16, "here.c", 1);
  std::free(block);
  c_free(static_cast<char*>(std::malloc(16)));
}

TEST_F(MemoryTest, FreeIgnoresNull) {
  c_free(nullptr);
  EXPECT_EQ(calls(), Calls());
}

TEST_F(MemoryTest, IsAllocatedWithoutAContext) {
  c_free(c_malloc(16, "here.c", 1));
  EXPECT_EQ(calls(), Calls());
}

}  // namespace
