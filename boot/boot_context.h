// SPDX-License-Identifier: MIT
// The lifecycle of the framework's participants: modules, products, the master observer.
#ifndef CPP2C_BOOT_BOOT_CONTEXT_H
#define CPP2C_BOOT_BOOT_CONTEXT_H

#include <string>

#include "include_c"

// A participant. At start, the context calls load, start, configure (onConfig() once for each configuration
// name) and run; at the end unconfigure, stop and unload. It calls the operations by their position in the
// virtual table: never reorder them.
//
// Each operation returns 0 on success or a negative result code. onConfig() and onUnconfig() may also return
// `kNotForMe`.
class CPP2C_API IBootContext {
 public:
  // Returned by onConfig() and onUnconfig() if `name` is meant for another participant.
  static constexpr int kNotForMe = 100;

  virtual ~IBootContext();
  virtual int onLoad();
  virtual int onStart();
  virtual int onConfig(std::string name, int arg);  // default: 0 for "master", otherwise kNotForMe
  virtual int onRun();
  virtual int onUnconfig(std::string name, int arg);  // default: as onConfig()
  virtual int onStop();
  virtual int onUnload();
  virtual int recvDependence(std::string name);  // `name`, on which others may depend, has changed
};

#endif
