// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_REGISTRATION_OBSERVER_LIST_H
#define CPP2C_HOST_REGISTRATION_OBSERVER_LIST_H

#include <functional>
#include <iterator>
#include <list>
#include <map>
#include <optional>
#include <unordered_map>
#include <utility>

#include "host/registration/registry.h"

namespace host {

// The observers of one topic, in order of registration.
template <typename Observer, typename Less>
class TopicObservers {
 public:
  void add(Observer* observer, RegistrationHandle registration) {
    in_order_.push_back({observer, std::move(registration)});
    of_observer_.emplace(observer, std::prev(in_order_.end()));
  }

  // Removes the oldest entry of `observer`. Returns whether there was one. While observers are called, the
  // entry stays in the list, because one of the calls may be that of this entry.
  bool remove(const Observer* observer) {
    const auto oldest = of_observer_.lower_bound(observer);
    if (oldest == of_observer_.end() || oldest->first != observer) return false;
    if (notifying_ == 0) {
      in_order_.erase(oldest->second);
    } else {
      *oldest->second = {nullptr, RegistrationHandle()};
    }
    of_observer_.erase(oldest);
    return true;
  }

  template <typename Callback>
  bool notify(Callback callback) {
    const Notifying notifying(*this);
    bool succeeded = true;
    std::optional<Heartbeat::Reading> now;
    const auto last = std::prev(in_order_.end());
    for (auto entry = in_order_.begin();; ++entry) {
      if (Observer* observer = entry->observer) {
        if (!entry->registration.call([&] { return callback(*observer); }, now)) succeeded = false;
      }
      if (entry == last) return succeeded;
    }
  }

  bool isEmpty() const { return in_order_.empty(); }

 private:
  struct Entry {
    Observer* observer;  // null: removed
    RegistrationHandle registration;
  };

  // Lasts while observers are called.
  class Notifying {
   public:
    explicit Notifying(TopicObservers& observers) : observers_(observers) { observers_.notifying_++; }
    ~Notifying() {
      if (--observers_.notifying_ > 0 || observers_.in_order_.size() == observers_.of_observer_.size())
        return;
      observers_.in_order_.remove_if([](const Entry& entry) { return entry.observer == nullptr; });
    }
    Notifying(const Notifying&) = delete;
    Notifying& operator=(const Notifying&) = delete;

   private:
    TopicObservers& observers_;
  };

  using Entries = std::list<Entry>;

  Entries in_order_;
  std::multimap<const Observer*, typename Entries::iterator, Less> of_observer_;  // the oldest of each first
  int notifying_ = 0;                                                             // nested calls of notify()
};

// The observers of each topic. The list does not own the observers and accesses them only in notify(). The
// cost of an operation does not depend on the observers of other topics, and that of remove() hardly on those
// of its own.
template <typename Topic, typename Observer, typename Less = std::less<const Observer*>>
class ObserverList {
 public:
  void add(const Topic& topic, Observer* observer, RegistrationHandle registration) {
    topics_[topic].add(observer, std::move(registration));
  }

  // Removes the oldest entry of `observer` for `topic`. Returns whether there was one.
  bool remove(const Topic& topic, const Observer* observer) {
    const auto observers = topics_.find(topic);
    if (observers == topics_.end() || !observers->second.remove(observer)) return false;
    if (observers->second.isEmpty()) topics_.erase(observers);
    return true;
  }

  // Calls `callback` with each observer of the topic. The callback may add and remove observers: an observer
  // added meanwhile is not called this time, and a removed one is no longer called. Returns whether all
  // calls succeeded.
  template <typename Callback>
  bool notify(const Topic& topic, Callback callback) {
    const auto found = topics_.find(topic);
    if (found == topics_.end()) return true;
    TopicObservers<Observer, Less>& observers = found->second;  // stays, unlike `found`, if topics are added
    const bool succeeded = observers.notify(callback);
    if (observers.isEmpty()) topics_.erase(topic);
    return succeeded;
  }

 private:
  std::unordered_map<Topic, TopicObservers<Observer, Less>> topics_;  // each has observers
};

}  // namespace host

#endif
