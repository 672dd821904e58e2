// SPDX-License-Identifier: MIT
#include "host/lifecycle/lifecycle.h"

#include <iterator>
#include <new>
#include <utility>

namespace host {
namespace {

struct Step {
  State state;  // after the step
  int (*take)(IBootContext& boot, const char* configuration);
  void (*reverse)(IBootContext& boot);
};

constexpr Step kSteps[] = {
    {State::kLoaded,  //
     [](IBootContext& boot, const char*) { return boot.onLoad(); },
     [](IBootContext& boot) { boot.onUnload(); }},
    {State::kStarted,  //
     [](IBootContext& boot, const char*) { return boot.onStart(); },
     [](IBootContext& boot) { boot.onStop(); }},
    {State::kConfigured,
     [](IBootContext& boot, const char* configuration) { return boot.onConfig(configuration, 0); },
     // "master" for every participant, also for the product, which is configured as "cfmd".
     [](IBootContext& boot) { boot.onUnconfig("master", 0); }},
    {State::kRunning,  //
     [](IBootContext& boot, const char*) { return boot.onRun(); }, [](IBootContext&) {}},
};

}  // namespace

Lifecycle::Lifecycle(IContext* context, std::vector<std::string> modules, ILog& log, Registry& registry)
    : log_(log), registry_(registry), product_(context, std::move(modules), log, registry) {}

int Lifecycle::registMasterObserver(IBootContext* observer) {
  if (observer == nullptr || loaded_) return C_RESULT_PARAM;
  if (master_observer_) return C_RESULT_REDUNDANT;
  master_observer_.emplace("the master observer", observer, log_, registry_);
  return C_RESULT_OK;
}

std::array<Lifecycle::Member, 2> Lifecycle::members() {
  return {{{&product_, "cfmd"}, {master_observer_ ? &*master_observer_ : nullptr, "master"}}};
}

int Lifecycle::load() {
  if (loaded_) return C_RESULT_REDUNDANT;
  loaded_ = true;
  try {
    int result = product_.open();
    if (result == C_RESULT_OK) result = takeSteps();
    if (result != C_RESULT_OK) unload();
    return result;
  } catch (const std::bad_alloc&) {
    unload();
    throw;
  }
}

int Lifecycle::takeSteps() {
  for (const Step& step : kSteps) {
    for (const Member& member : members()) {
      if (member.boot == nullptr) continue;
      const int result = step.take(*member.boot, member.configuration);
      if (result != C_RESULT_OK) return result;
    }
    state_ = step.state;
  }
  return C_RESULT_OK;
}

// A participant ignores the reversal of a step that it has not taken.
void Lifecycle::unload() {
  auto all = members();
  for (auto step = std::rbegin(kSteps); step != std::rend(kSteps); ++step) {
    for (auto member = all.rbegin(); member != all.rend(); ++member) {
      if (member->boot != nullptr) step->reverse(*member->boot);
    }
  }
  loaded_ = false;
  state_ = State::kIdle;
  when_unloaded_();
}

void Lifecycle::notifyDepends(const std::string& name) {
  for (const Member& member : members()) {
    if (member.boot != nullptr) member.boot->recvDependence(name);
  }
}

}  // namespace host
