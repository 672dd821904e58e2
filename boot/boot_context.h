// SPDX-License-Identifier: MIT
// The lifecycle of everything that the framework boots: modules, products, the master observer.
#ifndef CPP2C_BOOT_BOOT_CONTEXT_H
#define CPP2C_BOOT_BOOT_CONTEXT_H

#include <string>

#include "include_c"

// One participant of start-up and shut-down. The context calls the operations in the order load, start,
// configure (one onConfig() for each configuration name), run; then unconfigure, stop, unload. They are
// called by position in the virtual table: their order is the contract.
//
// Each operation answers 0 when it is done, or a negative result code. onConfig() and onUnconfig() may also
// answer `kNotForMe`.
class CPP2C_API IBootContext {
 public:
  // The answer to a configuration call that is meant for another participant.
  static constexpr int kNotForMe = 100;

  virtual ~IBootContext();
  virtual int onLoad();
  virtual int onStart();
  virtual int onConfig(std::string name, int arg);  // by default: 0 for exactly "master", else kNotForMe
  virtual int onRun();
  virtual int onUnconfig(std::string name, int arg);  // by default: as onConfig()
  virtual int onStop();
  virtual int onUnload();
  virtual int recvDependence(std::string name);  // something that others depend on has changed
};

#endif
