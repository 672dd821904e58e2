// SPDX-License-Identifier: MIT
#include "host/lifecycle/lifecycle.h"

#include <iterator>
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

std::vector<Lifecycle::Member> Lifecycle::members() {
  std::vector<Member> members = {{&product_, "cfmd"}};
  if (master_observer_) members.push_back({&*master_observer_, "master"});
  return members;
}

int Lifecycle::load() {
  if (loaded_) return C_RESULT_REDUNDANT;
  loaded_ = true;
  int result = product_.open();
  if (result == C_RESULT_OK) result = takeSteps();
  if (result != C_RESULT_OK) unload();
  return result;
}

int Lifecycle::takeSteps() {
  for (const Step& step : kSteps) {
    for (const Member& member : members()) {
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
    for (auto member = all.rbegin(); member != all.rend(); ++member) step->reverse(*member->boot);
  }
  loaded_ = false;
  state_ = State::kIdle;
  when_unloaded_();
}

void Lifecycle::notifyDepends(const std::string& name) {
  for (const Member& member : members()) member.boot->recvDependence(name);
}

}  // namespace host
