// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_REGISTRATION_OBSERVER_LIST_H
#define CPP2C_HOST_REGISTRATION_OBSERVER_LIST_H

#include <algorithm>
#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "host/registration/registry.h"

namespace host {

// Who observes what, in order of registration. Observers are neither owned nor touched outside notify().
template <typename Topic, typename Observer>
class ObserverList {
 public:
  void add(Topic topic, Observer* observer, RegistrationHandle registration) {
    entries_.emplace(next_serial_++, Entry{std::move(topic), observer, std::move(registration)});
  }

  // Takes out the oldest entry of this observer for this topic. Returns whether there was one.
  bool remove(const Topic& topic, const Observer* observer) {
    auto found = std::find_if(entries_.begin(), entries_.end(), [&](const auto& item) {
      return item.second.observer == observer && item.second.topic == topic;
    });
    if (found == entries_.end()) return false;
    entries_.erase(found);
    return true;
  }

  // Calls `tell` with each observer of the topic. It may add and remove observers: one that is added is not
  // told yet, one that is removed is not told any more.
  template <typename Tell>
  void notify(const Topic& topic, Tell tell) const {
    for (const Serial serial : serialsOf(topic)) {
      auto entry = entries_.find(serial);
      if (entry == entries_.end()) continue;
      Observer& observer = *entry->second.observer;
      entry->second.registration.call([&] { return tell(observer); });
    }
  }

 private:
  using Serial = std::uint64_t;

  struct Entry {
    Topic topic;
    Observer* observer;
    RegistrationHandle registration;
  };

  std::vector<Serial> serialsOf(const Topic& topic) const {
    std::vector<Serial> serials;
    for (const auto& [serial, entry] : entries_) {
      if (entry.topic == topic) serials.push_back(serial);
    }
    return serials;
  }

  Serial next_serial_ = 0;
  std::map<Serial, Entry> entries_;
};

}  // namespace host

#endif
