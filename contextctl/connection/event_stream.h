// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_CONNECTION_EVENT_STREAM_H
#define CPP2C_CONTEXTCTL_CONNECTION_EVENT_STREAM_H

#include <functional>
#include <string>
#include <string_view>

namespace contextctl {

// Extracts the items of a "text/event-stream": the "data" of each, with its lines joined. Comments, which
// keep the connection alive, and other fields are skipped.
class EventStream {
 public:
  using OnItem = std::function<void(const std::string& item)>;

  explicit EventStream(OnItem on_item) : on_item_(std::move(on_item)) {}

  // The bytes may end anywhere. Throws Failure if an item is larger than 16 MiB.
  void feed(std::string_view bytes);

 private:
  void append(char c);
  void endLine();

  OnItem on_item_;
  std::string line_;
  std::string item_;
  bool has_item_ = false;
};

}  // namespace contextctl

#endif
