// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_HOST_CONTEXT_H
#define CPP2C_HOST_HOST_CONTEXT_H

#include <memory>
#include <string>

#include "binding/context.h"

namespace host {

struct HostServices;

// The context on a Linux host. Its services exist once init() has succeeded. Until then, every other
// operation returns C_RESULT_NOT_INIT or null.
//
// The library deletes all registered objects before the context, so the destructor must not access them. In a
// forked process, the destructor leaves the services as they are: they belong to the parent.
class HostContext final : public IContext {
 public:
  HostContext();
  ~HostContext() override;

  // The arguments are `argc` and `argv` of main(), or 0 and 0. On failure, prints one line to standard
  // error. A failed initialisation releases everything: init() can be called again.
  int init(std::uintptr_t argc, std::uintptr_t argv) override;
  int load() override;

  ILog* getLog() override;
  ICfm* getCfm() override;
  IEvent* getEvent() override;
  IHeartbeat* getHeartbeat() override;
  ILoop* getLoop() override;

  int debugOut(const char* file, int line, const char* text) override;
  int debugSwitch(int value) override;
  int systemCall(const char* command) override;
  int systemCall2(const char* command) override;
  int popenCall(const char* command) override;
  int registMasterObserver(IBootContext* observer) override;
  int setTimer(int first, int zero, int period, ITimer* timer) override;
  int notifyDepends(std::string name) override;

  int reserved5() override { return 0; }
  int reserved11() override { return 0; }
  int reserved12() override { return 0; }
  int reserved18() override { return 0; }
  int reserved21() override { return 0; }
  int reserved22() override { return 0; }
  int reserved23() override { return 0; }

 private:
  // Throws std::bad_alloc.
  int createServices(int argc, const char* const* argv);

  std::unique_ptr<HostServices> services_;
};

}  // namespace host

#endif
