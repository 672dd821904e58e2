// SPDX-License-Identifier: MIT
#ifndef CPP2C_BOOT_PRODUCT_CONFIG_H
#define CPP2C_BOOT_PRODUCT_CONFIG_H

#include <list>
#include <map>
#include <string>

#include "boot/boot_context.h"

class DllMgr;
class IContext;
class IModule;

// A whole product: opens its module libraries and passes every lifecycle call on to all of them.
//
// Boot code derives from it, calls loadModules() once, and lets the context drive the product like any other
// participant. Calls reach the modules in ascending order of their addresses, not in the order of the list;
// all are called even after one has failed, and the answer is the last one that was not 0.
class CPP2C_API IProductConfig : public IBootContext {
 public:
  // `context` is handed to each module library; it stays the caller's and must outlive this object.
  explicit IProductConfig(IContext* context);

  // Releases the modules and closes their libraries.
  ~IProductConfig() override;

  IProductConfig(const IProductConfig&) = delete;
  IProductConfig& operator=(const IProductConfig&) = delete;

  int onLoad() override;
  int onStart() override;
  int onConfig(std::string name, int arg) override;  // reaches the modules for exactly "cfmd"; else kNotForMe
  int onRun() override;
  int onUnconfig(std::string name, int arg) override;  // reaches them for exactly "master"; else kNotForMe
  int onUnload() override;
  int recvDependence(std::string name) override;  // always 0

  // The product's name, for whoever reports on it. Never called by this class.
  virtual std::string productName() = 0;

  // Appends the product's module libraries, file names or paths, to `libraries`. Called by loadModules().
  virtual void listLibraries() = 0;

  // The product's version, for whoever reports on it. Never called by this class.
  virtual std::string productVersion() = 0;

  // Opens every listed library and asks it for its module. A library that cannot be opened or yields no
  // module is skipped; compare `libraries` with `modules` to find it.
  void loadModules();

  // Releases every module and closes its library. A library's "relInstance" is called twice, the second time
  // with null.
  void release_modules();

 protected:
  std::list<std::string> libraries;
  IContext* context;
  std::map<IModule*, DllMgr*> modules;  // owns the libraries
};

#endif
