// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_SUPPORT_PRINTED_TEXT_H
#define CPP2C_TESTS_SUPPORT_PRINTED_TEXT_H

#include <optional>
#include <string>

#include <gtest/gtest.h>

// Captures the output of the process. Each function ends the capture of its stream and returns the text.
class PrintedText {
 public:
  PrintedText() {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
  }

  PrintedText(const PrintedText&) = delete;
  PrintedText& operator=(const PrintedText&) = delete;

  ~PrintedText() {
    standardOutput();
    standardError();
  }

  std::string standardOutput() { return collected(output_, testing::internal::GetCapturedStdout); }
  std::string standardError() { return collected(error_, testing::internal::GetCapturedStderr); }

 private:
  static std::string collected(std::optional<std::string>& text, std::string (*end)()) {
    if (!text) text = end();
    return *text;
  }

  std::optional<std::string> output_;
  std::optional<std::string> error_;
};

#endif
