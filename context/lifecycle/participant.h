// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXT_LIFECYCLE_PARTICIPANT_H
#define CPP2C_CONTEXT_LIFECYCLE_PARTICIPANT_H

#include <string>

#include "boot/module.h"

class ILog;

// Stands before a module or the master observer: passes each step on, reports the one that fails, and takes
// back only what has been done. Every answer that is not negative counts as 0.
//
// What it stands before is touched only when a step is passed on.
class Participant final : public IModule {
 public:
  Participant(std::string name, IBootContext* boot, ILog& log);

  int onLoad() override;
  int onStart() override;
  int onConfig(std::string name, int arg) override;
  int onRun() override;
  int onUnconfig(std::string name, int arg) override;
  int onStop() override;
  int onUnload() override;
  int recvDependence(std::string name) override;  // passed on between loading and unloading

 private:
  enum State { kIdle, kLoaded, kStarted, kConfigured, kRunning };

  template <typename Call>
  int advanceTo(State state, const char* operation, Call call);
  template <typename Call>
  int fallBackTo(State state, const char* operation, Call call);
  int check(const char* operation, int result);

  const std::string name_;
  IBootContext* const boot_;
  ILog& log_;
  State state_ = kIdle;
};

#endif
