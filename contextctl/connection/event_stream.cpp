// SPDX-License-Identifier: MIT
#include "contextctl/connection/event_stream.h"

#include <utility>

#include "contextctl/system/failure.h"
#include "util/text.h"

namespace contextctl {

void EventStream::feed(std::string_view bytes) {
  for (const char c : bytes) {
    if (c == '\n') {
      endLine();
    } else if (c != '\r') {
      append(c);
    }
  }
}

void EventStream::append(char c) {
  constexpr size_t kLargestItem = 16 << 20;
  if (item_.size() + line_.size() == kLargestItem) {
    throw Failure(kExitNoAnswer,
                  "invalid answer from the context: an item of the stream is larger than 16 MiB");
  }
  line_ += c;
}

void EventStream::endLine() {
  const std::string line = std::exchange(line_, "");
  if (util::startsWith(line, "data:")) {
    if (has_item_) item_ += '\n';
    item_ += line.substr(line.compare(5, 1, " ") == 0 ? 6 : 5);
    has_item_ = true;
  } else if (line.empty() && std::exchange(has_item_, false)) {
    on_item_(std::exchange(item_, ""));
  }
}

}  // namespace contextctl
