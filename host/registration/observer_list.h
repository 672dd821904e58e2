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

// The observers of each topic, in order of registration. The list does not own the observers and accesses
// them only in notify().
template <typename Topic, typename Observer>
class ObserverList {
 public:
  void add(Topic topic, Observer* observer, RegistrationHandle registration) {
    entries_.emplace(next_serial_++, Entry{std::move(topic), observer, std::move(registration)});
  }

  // Removes the oldest entry of `observer` for `topic`. Returns whether there was one.
  bool remove(const Topic& topic, const Observer* observer) {
    auto found = std::find_if(entries_.begin(), entries_.end(), [&](const auto& item) {
      return item.second.observer == observer && item.second.topic == topic;
    });
    if (found == entries_.end()) return false;
    entries_.erase(found);
    return true;
  }

  // Calls `callback` with each observer of the topic. The callback may add and remove observers: an observer
  // added meanwhile is not called this time, and a removed one is not called any more. Returns whether all
  // calls succeeded.
  template <typename Callback>
  bool notify(const Topic& topic, Callback callback) const {
    bool succeeded = true;
    for (const Serial serial : serialsOf(topic)) {
      auto entry = entries_.find(serial);
      if (entry == entries_.end()) continue;
      Observer& observer = *entry->second.observer;
      if (!entry->second.registration.call([&] { return callback(observer); })) succeeded = false;
    }
    return succeeded;
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
