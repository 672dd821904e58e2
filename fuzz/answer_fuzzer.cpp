// SPDX-License-Identifier: MIT
// The client parses or rejects any answer.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "contextctl/connection/event_stream.h"
#include "contextctl/connection/message.h"
#include "contextctl/system/failure.h"
#include "fuzz/harness.h"

namespace contextctl {
namespace {

void checkAnswer(const std::string& text) {
  try {
    require(!readAnswer(text).json.empty(), "an answer can be printed");
  } catch (const Failure& failure) {
    require(failure.status() == kExitNoAnswer, "an invalid answer has its exit status");
  }
  readRefusal(text);
}

std::vector<std::string> itemsOf(const std::string& text, std::size_t part) {
  std::vector<std::string> items;
  EventStream stream([&](const std::string& item) { items.push_back(item); });
  for (std::size_t i = 0; i < text.size(); i += part) stream.feed(std::string_view(text).substr(i, part));
  return items;
}

}  // namespace
}  // namespace contextctl

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(data, data + size);
  contextctl::checkAnswer(text);
  const std::vector<std::string> items = contextctl::itemsOf(text, text.size() + 1);
  require(items == contextctl::itemsOf(text, 1) && items == contextctl::itemsOf(text, 3),
          "pieces of a stream may end anywhere");
  for (const std::string& item : items) contextctl::checkAnswer(item);
  return 0;
}
