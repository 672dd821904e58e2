// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_CONTROL_FOLLOWERS_H
#define CPP2C_HOST_CONTROL_FOLLOWERS_H

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "host/http/stream.h"

namespace host {

// The streams that follow one kind of item: events, changes or log lines.
template <typename Item>
class Followers {
 public:
  // Returns the text to send for an item, or the empty string to skip it.
  using Format = std::function<std::string(const Item&)>;

  void add(std::weak_ptr<Stream> stream, Format format) {
    removeClosed();
    followers_.push_back({std::move(stream), std::move(format)});
  }

  // Items that sending itself causes, such as a log line, are dropped: they would cause more without end.
  void publish(const Item& item) {
    if (publishing_ || followers_.empty()) return;
    const Publishing publishing(publishing_);
    for (const Follower& follower : followers_) follower.send(item);
    removeClosed();
  }

 private:
  struct Follower {
    void send(const Item& item) const {
      const auto open = stream.lock();
      if (open == nullptr) return;
      const std::string text = format(item);
      if (!text.empty()) open->send(text);
    }

    std::weak_ptr<Stream> stream;
    Format format;
  };

  // Ends also if sending fails from want of memory.
  class Publishing {
   public:
    explicit Publishing(bool& flag) : flag_(flag) { flag_ = true; }
    ~Publishing() { flag_ = false; }
    Publishing(const Publishing&) = delete;
    Publishing& operator=(const Publishing&) = delete;

   private:
    bool& flag_;
  };

  void removeClosed() {
    followers_.erase(std::remove_if(followers_.begin(), followers_.end(),
                                    [](const Follower& follower) { return follower.stream.expired(); }),
                     followers_.end());
  }

  std::vector<Follower> followers_;
  bool publishing_ = false;
};

}  // namespace host

#endif
