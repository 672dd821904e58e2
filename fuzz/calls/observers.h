// SPDX-License-Identifier: MIT
#ifndef CPP2C_FUZZ_CALLS_OBSERVERS_H
#define CPP2C_FUZZ_CALLS_OBSERVERS_H

#include <algorithm>
#include <string>
#include <vector>

#include "fuzz/calls/bridge.h"
#include "fuzz/calls/cache.h"

template <int N>
int onChange(void* user, int id, const char* instance, int operation, const char* leaf) {
  return Bridge::current->called(
      described(std::string("change"), N, user, id, std::string(instance), operation, std::string(leaf)));
}

// Configuration observers and the lookup of existing instances.
class Observers {
 public:
  Observers(Bridge& bridge, Cache& cache) : bridge_(bridge), cache_(cache) {
    bridge_.proxy.calls.results["cfm.releaseIterator"] = kReleased;
  }

  void add() {
    const int id = anyId();
    const int function = anyFunction();
    void* user = bridge_.anyUser();
    const Bridge::Scope scope(bridge_, "c_cfm_regist_observer()");
    const bool reached = bridge_.reachService("getCfm");
    if (reached) expectRegistration(id);
    c_cfm_regist_observer(id, kFunctions[function], user);
    if (!reached) return;
    observers_.push_back({id, function, user, bridge_.proxy.context.cfm.registered.back().observer});
    for (const std::string& name : instancesOf(id)) cache_.addInModel(id, name, nullptr);
  }

  void remove() {
    const int id = anyId();
    const int function = anyFunction();
    const Bridge::Scope scope(bridge_, "c_cfm_unregist_observer()");
    const auto found = std::find_if(observers_.begin(), observers_.end(), [&](const Observer& observer) {
      return observer.id == id && observer.function == function;
    });
    const bool known = found != observers_.end();
    if (known && !cache_.mayReleaseAll(id)) return;
    const bool removes = bridge_.reachService("getCfm") && known;
    if (removes) bridge_.expect("cfm.unregistObserver(" + std::to_string(id) + ", object)");
    c_cfm_unregist_observer(id, kFunctions[function]);
    if (!removes) return;
    require(bridge_.proxy.context.cfm.unregistered.back().observer == found->adapter,
            "the oldest registration of an object and a function is removed");
    observers_.erase(found);
    cache_.releaseAllInModel(id);
  }

  void find() {
    const int id = anyId();
    const Bridge::Scope scope(bridge_, "c_cfm_get_regist_observer_callback()");
    const auto found = std::find_if(observers_.begin(), observers_.end(),
                                    [id](const Observer& observer) { return observer.id == id; });
    const bool finds = bridge_.reachService("getCfm") && found != observers_.end();
    require(c_cfm_get_regist_observer_callback(id) == (finds ? kFunctions[found->function] : nullptr),
            "the oldest callback of an object is found");
  }

  void deliver() {
    const unsigned int index = bridge_.input.below(256);
    const int id = anyId();
    const int operation = bridge_.input.word();
    const std::string instance = bridge_.input.bytes();
    const std::string leaf = bridge_.input.bytes();
    if (observers_.empty()) return;
    const Observer observer = observers_[index % observers_.size()];  // a copy: the callback may remove it
    const Bridge::Scope scope(bridge_, "a configuration observer");
    const bool calls = kFunctions[observer.function] != nullptr;
    const std::string callback =
        calls ? described(std::string("change"), observer.function, observer.user, id,
                          std::string(instance.c_str()), operation, std::string(leaf.c_str()))
              : "";
    const int result = bridge_.expectCallback(
        callback, [&] { return observer.adapter->update(id, instance, operation, leaf); });
    requireEqual(result, calls ? bridge_.result() : C_RESULT_NO_CALLBACK, "result of an observer");
  }

  void lookup() {
    const int id = anyId();
    const bool visits = bridge_.input.below(8) != 7;
    const PassedThrough passed(bridge_.input);
    const Bridge::Scope scope(bridge_, "c_cfm_lookup_instance()");
    walks_.push_back({id, {}, passed});
    const bool reached = bridge_.reach() && visits && bridge_.get("getCfm");
    if (reached) bridge_.expect("cfm.instanceIterator(" + std::to_string(id) + ")");
    if (reached) walks_.back().left = instancesOf(id);
    const bool walks = !walks_.back().left.empty();
    if (walks) bridge_.expect("iterator.name()");
    requireEqual(c_cfm_lookup_instance(id, visits ? visit : nullptr, passed.fn3, passed.fn4, this),
                 walks ? kReleased : 0, "result of c_cfm_lookup_instance()");
    require(walks_.back().left.empty(), "c_cfm_lookup_instance() visits every instance");
    require(walks_.size() > 1 || bridge_.proxy.context.cfm.iterators_on_loan.empty(),
            "every iterator is released");
    walks_.pop_back();
  }

  void changeInstances() {
    const int id = anyId();
    std::vector<std::string> names(bridge_.input.below(4));
    for (std::string& name : names) name = bridge_.input.oneOf(kNames);
    auto& instances = bridge_.proxy.context.cfm.instances;
    if (names.empty()) {
      instances.erase(id);
    } else {
      instances[id] = names;
    }
  }

  void clearInModel() { observers_.clear(); }

 private:
  struct Observer {
    int id;
    int function;
    void* user;
    ICfmObserver* adapter;
  };
  struct Walk {
    int id;
    std::vector<std::string> left;  // to be visited
    PassedThrough passed;
  };

  static constexpr c_cfm_callback kFunctions[] = {onChange<0>, onChange<1>, nullptr};
  static constexpr int kReleased = 41;  // result of the service for each iterator

  int anyId() { return bridge_.input.oneOf(kIds); }
  int anyFunction() { return static_cast<int>(bridge_.input.below(3)); }

  std::vector<std::string> instancesOf(int id) const {
    const auto& instances = bridge_.proxy.context.cfm.instances;
    const auto found = instances.find(id);
    return found != instances.end() ? found->second : std::vector<std::string>();
  }

  void expectRegistration(int id) {
    const std::string number = std::to_string(id);
    bridge_.expect("cfm.registObserver(" + number + ", object)");
    bridge_.expect("cfm.instanceIterator(" + number + ")");
    const std::size_t instances = instancesOf(id).size();
    for (std::size_t i = 0; i < instances; i++) {
      bridge_.expect("iterator.name()");
      bridge_.expect("iterator.next()");
    }
    if (instances > 0) bridge_.expect("cfm.releaseIterator(" + number + ")");
  }

  static int visit(int id, char* name, void* userdata, c_pass_fn3 fn3, c_pass_fn4 fn4, void* arg) {
    static_cast<Observers*>(arg)->check(id, name, userdata, fn3, fn4);
    return Bridge::current->input.word();
  }

  void check(int id, const std::string& name, void* userdata, c_pass_fn3 fn3, c_pass_fn4 fn4) {
    Walk& walk = walks_.back();
    require(!walk.left.empty(), "c_cfm_lookup_instance() visits each instance once");
    requireEqual(described(id, name, userdata),
                 described(walk.id, walk.left.front(), static_cast<void*>(nullptr)),
                 "a visit by c_cfm_lookup_instance()");
    require(fn3 == walk.passed.fn3 && fn4 == walk.passed.fn4, "a lookup passes its arguments on");
    walk.left.erase(walk.left.begin());
    bridge_.nest();
    const Walk& resumed = walks_.back();
    bridge_.expect("iterator.next()");
    bridge_.expect(resumed.left.empty() ? "cfm.releaseIterator(" + std::to_string(resumed.id) + ")"
                                        : "iterator.name()");
  }

  Bridge& bridge_;
  Cache& cache_;
  std::vector<Observer> observers_;  // in the order of registration
  std::vector<Walk> walks_;
};

#endif
