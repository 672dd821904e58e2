// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_CONTROL_TOPIC_H
#define CPP2C_HOST_CONTROL_TOPIC_H

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "host/control/stream.h"

// Those who follow one kind of news.
template <typename News>
class Topic {
 public:
  // Gives the text to send for a piece of news; the empty text: it is nothing for this follower.
  using Tell = std::function<std::string(const News&)>;

  void add(std::weak_ptr<Stream> stream, Tell tell) {
    forgetTheGone();
    followers_.push_back({std::move(stream), std::move(tell)});
  }

  // News that sending itself gives rise to, a line in the log for instance, is not sent: it would have no
  // end.
  void publish(const News& news) {
    if (publishing_ || followers_.empty()) return;
    publishing_ = true;
    for (const Follower& follower : followers_) follower.send(news);
    forgetTheGone();
    publishing_ = false;
  }

 private:
  struct Follower {
    void send(const News& news) const {
      const auto open = stream.lock();
      if (open == nullptr) return;
      const std::string text = tell(news);
      if (!text.empty()) open->send(text);
    }

    std::weak_ptr<Stream> stream;
    Tell tell;
  };

  void forgetTheGone() {
    followers_.erase(std::remove_if(followers_.begin(), followers_.end(),
                                    [](const Follower& follower) { return follower.stream.expired(); }),
                     followers_.end());
  }

  std::vector<Follower> followers_;
  bool publishing_ = false;
};

#endif
