// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_REGISTRATION_REGISTRY_H
#define CPP2C_HOST_REGISTRATION_REGISTRY_H

#include <chrono>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/heartbeat/heartbeat.h"
#include "host/registration/callee.h"

// What a registration is for.
enum class Kind { kFd, kTimer, kEvent, kChange, kProvider, kModule };

// "fd", "timer", "event", "change", "provider" or "module".
const char* nameOf(Kind kind);

struct CallStatistics {
  using Duration = Heartbeat::TimePoint::duration;

  void add(Duration duration, std::optional<int> result);

  std::uint64_t count = 0;
  Duration total{0};
  Duration longest{0};
  Duration last{0};
  std::optional<int> last_result;  // of a callback that answers a number
};

// One registration: who is called, for what, since when, and how that went so far.
struct Callback {
  Kind kind;
  std::string key;  // the descriptor, the event, the object ...
  Callee callee;
  std::chrono::system_clock::time_point since;
  CallStatistics statistics;
};

// "function (file.c:12) of fd 7".
std::string textOf(const Callback& callback);

// One call that has returned.
struct Call {
  std::shared_ptr<const Callback> callback;
  Heartbeat::Reading before;
  Heartbeat::Reading after;
  std::optional<int> result;
};

class Registration;

// Knows every registration, and measures the calls that are made through them. It outlives them all.
class Registry {
 public:
  using WallTime = std::function<std::chrono::system_clock::time_point()>;

  explicit Registry(Heartbeat& heartbeat, WallTime wall_time = std::chrono::system_clock::now);

  Registration add(Kind kind, std::string key, const Callee& callee);

  // All there are, in the order in which they were made.
  std::vector<std::shared_ptr<const Callback>> callbacks() const;

  // All calls, a call inside another one counting as part of that.
  const CallStatistics& statistics() const { return statistics_; }

  // Has a function called with each registration that is made, and with each call that has returned.
  void onAdded(std::function<void(const Callback&)> tell) { on_added_ = std::move(tell); }
  void onCalled(std::function<void(const Call&)> tell) { on_called_.push_back(std::move(tell)); }

 private:
  friend class Registration;

  using Callbacks = std::list<std::shared_ptr<Callback>>;

  // A call in progress. It may end by an exception, and is then not measured.
  class Depth {
   public:
    explicit Depth(int& depth) : depth_(depth) { depth_++; }
    ~Depth() { depth_--; }
    Depth(const Depth&) = delete;
    Depth& operator=(const Depth&) = delete;

   private:
    int& depth_;
  };

  void finish(std::shared_ptr<Callback> callback, const Heartbeat::Reading& before,
              std::optional<int> result);

  Heartbeat& heartbeat_;
  const WallTime wall_time_;
  Callbacks callbacks_;
  CallStatistics statistics_;
  int depth_ = 0;  // of calls inside calls
  std::function<void(const Callback&)> on_added_;
  std::vector<std::function<void(const Call&)>> on_called_;
};

// Keeps one registration in the registry; it leaves that with the handle.
class Registration {
 public:
  Registration() = default;  // of nobody: its calls are not measured
  Registration(Registry& registry, Registry::Callbacks::iterator entry)
      : registry_(&registry), entry_(entry) {}
  ~Registration() { leave(); }
  Registration(Registration&& other) noexcept
      : registry_(std::exchange(other.registry_, nullptr)), entry_(other.entry_) {}
  Registration& operator=(Registration&& other) noexcept {
    if (this != &other) leave();
    registry_ = std::exchange(other.registry_, nullptr);
    entry_ = other.entry_;
    return *this;
  }

  // Makes one call, which may end this very registration, and returns its result.
  template <typename Function>
  auto call(Function function) const {
    if (registry_ == nullptr) return function();
    Registry& registry = *registry_;
    std::shared_ptr<Callback> callback = *entry_;
    const Registry::Depth depth(registry.depth_);
    const Heartbeat::Reading before = registry.heartbeat_.read();
    auto result = function();
    registry.finish(std::move(callback), before, numberIn(result));
    return result;
  }

 private:
  static std::optional<int> numberIn(int result) { return result; }
  static std::optional<int> numberIn(const std::string& /*result*/) { return std::nullopt; }

  void leave() {
    if (registry_ != nullptr) registry_->callbacks_.erase(entry_);
  }

  Registry* registry_ = nullptr;
  Registry::Callbacks::iterator entry_;
};

#endif
