// SPDX-License-Identifier: MIT
// For any bytes from the socket, the client parses an answer or reports a failure.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "contextctl/event_stream.h"
#include "contextctl/failure.h"
#include "contextctl/message.h"
#include "fuzz/harness.h"

namespace {

void checkAnswer(const std::string& text) {
  try {
    require(!readAnswer(text).json.empty(), "an answer can be printed");
  } catch (const Failure& failure) {
    require(failure.status() == kExitNoAnswer, "an invalid answer has the status for no answer");
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

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(data, data + size);
  checkAnswer(text);
  const std::vector<std::string> items = itemsOf(text, text.size() + 1);
  require(items == itemsOf(text, 1) && items == itemsOf(text, 3),
          "the items of a stream do not depend on how it is split");
  for (const std::string& item : items) checkAnswer(item);
  return 0;
}
