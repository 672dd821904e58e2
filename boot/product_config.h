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

// A product: opens its module libraries and forwards every lifecycle call to all modules.
//
// Boot code derives a class from it and calls loadModules() once. The context then calls the product like any
// other participant. The modules are called in ascending order of their addresses, not in the order of the
// list. All modules are called, even after one fails; the result is the last result other than 0.
class CPP2C_API IProductConfig : public IBootContext {
 public:
  // `context` is passed to each module library. The caller keeps ownership; it must outlive this object.
  explicit IProductConfig(IContext* context);

  // Releases the modules and closes their libraries.
  ~IProductConfig() override;

  IProductConfig(const IProductConfig&) = delete;
  IProductConfig& operator=(const IProductConfig&) = delete;

  int onLoad() override;
  int onStart() override;
  int onConfig(std::string name, int arg) override;  // forwarded for "cfmd"; otherwise kNotForMe
  int onRun() override;
  int onUnconfig(std::string name, int arg) override;  // forwarded for "master"; otherwise kNotForMe
  int onUnload() override;
  int recvDependence(std::string name) override;  // always 0

  // The product's name, for reports. Not called by this class.
  virtual std::string productName() = 0;

  // Appends the file names or paths of the module libraries to `libraries`. Called by loadModules().
  virtual void listLibraries() = 0;

  // The product's version, for reports. Not called by this class.
  virtual std::string productVersion() = 0;

  // Opens every listed library and gets its module. A library that cannot be opened or returns no module is
  // skipped; compare `libraries` with `modules` to detect it. If memory runs out, the modules opened so far
  // are in `modules`.
  void loadModules();

  // Releases every module and closes its library. Each library's "relInstance" is called twice, the second
  // time with null.
  void release_modules();

 protected:
  std::list<std::string> libraries;
  IContext* context;
  std::map<IModule*, DllMgr*> modules;  // owns the libraries
};

#endif
