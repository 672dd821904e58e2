// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_REGISTRATION_OBSERVER_LIST_H
#define CPP2C_HOST_REGISTRATION_OBSERVER_LIST_H

#include <cstdint>
#include <functional>
#include <map>
#include <unordered_map>
#include <utility>
#include <vector>

#include "host/registration/registry.h"

namespace host {

// The observers of each topic, in order of registration. The list does not own the observers and accesses
// them only in notify(). The cost of an operation does not depend on the observers of other topics, and that
// of remove() hardly on those of its own.
template <typename Topic, typename Observer, typename Less = std::less<const Observer*>>
class ObserverList {
 public:
  void add(const Topic& topic, Observer* observer, RegistrationHandle registration) {
    Entries& entries = topics_[topic];
    entries.in_order.emplace(next_serial_, Entry{observer, std::move(registration)});
    entries.of_observer.emplace(observer, next_serial_++);
  }

  // Removes the oldest entry of `observer` for `topic`. Returns whether there was one.
  bool remove(const Topic& topic, const Observer* observer) {
    const auto entries = topics_.find(topic);
    if (entries == topics_.end()) return false;
    if (!entries->second.remove(observer)) return false;
    if (entries->second.in_order.empty()) topics_.erase(entries);
    return true;
  }

  // Calls `callback` with each observer of the topic. The callback may add and remove observers: an observer
  // added meanwhile is not called this time, and a removed one is no longer called. Returns whether all
  // calls succeeded.
  template <typename Callback>
  bool notify(const Topic& topic, Callback callback) const {
    bool succeeded = true;
    for (const Serial serial : serialsOf(topic)) {
      const Entry* entry = find(topic, serial);
      if (entry == nullptr) continue;
      Observer& observer = *entry->observer;
      if (!entry->registration.call([&] { return callback(observer); })) succeeded = false;
    }
    return succeeded;
  }

 private:
  using Serial = std::uint64_t;  // never used again

  struct Entry {
    Observer* observer;
    RegistrationHandle registration;
  };

  // The entries of one topic.
  struct Entries {
    bool remove(const Observer* observer) {
      const auto oldest = of_observer.lower_bound(observer);
      if (oldest == of_observer.end() || oldest->first != observer) return false;
      in_order.erase(oldest->second);
      of_observer.erase(oldest);
      return true;
    }

    std::map<Serial, Entry> in_order;
    std::multimap<const Observer*, Serial, Less> of_observer;  // the oldest of each observer first
  };

  std::vector<Serial> serialsOf(const Topic& topic) const {
    std::vector<Serial> serials;
    const auto entries = topics_.find(topic);
    if (entries == topics_.end()) return serials;
    serials.reserve(entries->second.in_order.size());
    for (const auto& [serial, entry] : entries->second.in_order) serials.push_back(serial);
    return serials;
  }

  const Entry* find(const Topic& topic, Serial serial) const {
    const auto entries = topics_.find(topic);
    if (entries == topics_.end()) return nullptr;
    const auto entry = entries->second.in_order.find(serial);
    return entry != entries->second.in_order.end() ? &entry->second : nullptr;
  }

  Serial next_serial_ = 0;
  std::unordered_map<Topic, Entries> topics_;
};

}  // namespace host

#endif
