// SPDX-License-Identifier: MIT
#ifndef CPP2C_FUZZ_CALLS_PARTICIPANTS_H
#define CPP2C_FUZZ_CALLS_PARTICIPANTS_H

#include <optional>
#include <string>
#include <vector>

#include "boot/module.h"
#include "fuzz/calls/bridge.h"

template <int N>
int onPlainStep() {
  return Bridge::current->called(described(N));
}

template <int N>
int onNamedStep(const char* name, int arg) {
  return Bridge::current->called(described(N, std::string(name), arg));
}

template <int N>
int onNotice(const char* name) {
  return Bridge::current->called(described(N, std::string(name)));
}

// Modules and the master observer.
class Participants {
 public:
  explicit Participants(Bridge& bridge) : bridge_(bridge) {}
  ~Participants() {
    for (const Module& module : modules_) c_module_unregist(module.handle);
  }
  Participants(const Participants&) = delete;
  Participants& operator=(const Participants&) = delete;

  void addModule() {
    ModuleCallbacks* table = anyTable();
    const Bridge::Scope scope(bridge_, "c_module_regist()");
    modules_.push_back({c_module_regist(table), table});
  }

  void removeModule() {
    if (modules_.empty() || bridge_.isNested()) return;
    const Bridge::Scope scope(bridge_, "c_module_unregist()");
    c_module_unregist(modules_.back().handle);
    modules_.pop_back();
  }

  void stepModule() {
    const unsigned int index = bridge_.input.below(256);
    if (modules_.empty()) return;
    const Module module = modules_[index % modules_.size()];
    runStep(*static_cast<IModule*>(module.handle), module.table, false);
  }

  void setMaster() {
    ModuleCallbacks* table = anyTable();
    const Bridge::Scope scope(bridge_, "c_context_regist_master_observer()");
    if (has_master_) {
      require(c_context_regist_master_observer(table) != 0, "there is one master observer");
      return;
    }
    const bool reached = bridge_.reach();
    const int result = reached ? bridge_.expectResult("context.registMasterObserver", "object") : 0;
    requireEqual(c_context_regist_master_observer(table), result,
                 "result of a master observer's registration");
    has_master_ = true;
    if (reached) master_ = {bridge_.proxy.context.master_observers.back(), table};
  }

  void stepMaster() {
    if (master_) runStep(*master_->observer, master_->table, true);
  }

  // Changes a table: the library does not own it and reads it at each step.
  void changeTable() {
    ModuleCallbacks& table = tables_[bridge_.input.below(2)];
    const unsigned int entries = bridge_.input.below(256);
    const auto has = [entries](unsigned int entry) { return (entries >> entry & 1) != 0; };
    table.onLoad = has(0) ? onPlainStep<0> : nullptr;
    table.onStart = has(1) ? onPlainStep<1> : nullptr;
    table.onConfig = has(2) ? onNamedStep<2> : nullptr;
    table.onRun = has(3) ? onPlainStep<3> : nullptr;
    table.onUnconfig = has(4) ? onNamedStep<4> : nullptr;
    table.onUnload = has(5) ? onPlainStep<5> : nullptr;
    table.recvDependence = has(6) ? onNotice<6> : nullptr;
  }

  void notify() {
    const std::string name = bridge_.input.text();
    const Bridge::Scope scope(bridge_, "c_context_notify_depends()");
    if (bridge_.reach()) bridge_.expect("context.notifyDepends('" + name + "')");
    c_context_notify_depends(name.c_str());
  }

  void clearInModel() {
    has_master_ = false;
    master_.reset();
  }

 private:
  struct Module {
    void* handle;
    ModuleCallbacks* table;
  };
  struct Master {
    IBootContext* observer;
    ModuleCallbacks* table;
  };

  // What a step does in the model.
  struct Step {
    const char* name;
    bool set;              // whether its function is called
    std::string callback;  // description of the call
    int (*run)(IBootContext& participant, const std::string& name, int arg);
  };

  ModuleCallbacks* anyTable() {
    const unsigned int table = bridge_.input.below(3);
    return table < 2 ? &tables_[table] : nullptr;
  }

  // The master observer tests onConfig before it calls onUnconfig.
  static Step stepOf(unsigned int number, const ModuleCallbacks& table, bool is_master,
                     const std::string& given, int arg) {
    using Participant = IBootContext&;
    using Name = const std::string&;
    const std::string name = given.c_str();
    switch (number) {
      case 0:
        return {"onLoad", table.onLoad != nullptr, described(0),
                [](Participant p, Name, int) { return p.onLoad(); }};
      case 1:
        return {"onStart", table.onStart != nullptr, described(1),
                [](Participant p, Name, int) { return p.onStart(); }};
      case 2:
        return {"onConfig", table.onConfig != nullptr, described(2, name, arg),
                [](Participant p, Name n, int a) { return p.onConfig(n, a); }};
      case 3:
        return {"onRun", table.onRun != nullptr, described(3),
                [](Participant p, Name, int) { return p.onRun(); }};
      case 4:
        return {"onUnconfig", is_master ? table.onConfig != nullptr : table.onUnconfig != nullptr,
                described(4, name, arg), [](Participant p, Name n, int a) { return p.onUnconfig(n, a); }};
      case 5:
        return {"onUnload", table.onUnload != nullptr, described(5),
                [](Participant p, Name, int) { return p.onUnload(); }};
      default:
        return {"recvDependence", table.recvDependence != nullptr, described(6, name),
                [](Participant p, Name n, int) { return p.recvDependence(n); }};
    }
  }

  void runStep(IBootContext& participant, const ModuleCallbacks* table, bool is_master) {
    const unsigned int number = bridge_.input.below(8);
    const std::string name = bridge_.input.bytes();
    const int arg = bridge_.input.word();
    const Bridge::Scope scope(bridge_, "a step of the lifecycle");
    if (number == 7) return requireEqual(participant.onStop(), 0, "result of onStop");

    const Step step = stepOf(number, table != nullptr ? *table : ModuleCallbacks{}, is_master, name, arg);
    // A master observer with onConfig must also have onUnconfig.
    if (is_master && number == 4 && step.set && table->onUnconfig == nullptr) return;
    if (table == nullptr && !is_master) bridge_.diagnose(std::string(step.name) + " not init!");
    const int result = bridge_.expectCallback(step.set ? step.callback : "",
                                              [&] { return step.run(participant, name, arg); });
    const int without_callback = table == nullptr ? C_RESULT_NOT_INIT : 0;
    requireEqual(result, step.set ? bridge_.result() : without_callback,
                 "result of " + std::string(step.name));
  }

  Bridge& bridge_;
  ModuleCallbacks tables_[2] = {};
  std::vector<Module> modules_;
  bool has_master_ = false;
  std::optional<Master> master_;  // if the context knows it
};

#endif
