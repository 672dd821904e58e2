// SPDX-License-Identifier: MIT
#include "binding/cfm_observer.h"

#include <algorithm>
#include <memory>

#include "binding/instance_walk.h"
#include "binding/services.h"
#include "dbc/new_names.h"

namespace {

// Returns the oldest registered observer for which `matches` is true, or null.
template <typename Predicate>
__CfmC* firstObserver(Predicate matches) {
  auto found = std::find_if(g_cfm_observers.begin(), g_cfm_observers.end(), matches);
  return found != g_cfm_observers.end() ? *found : nullptr;
}

struct Unregister {
  ICfm* cfm;

  void operator()(__CfmC* observer) const {
    cfm->unregistObserver(observer->id, observer);
    g_cfm_observers.remove(observer);
    delete observer;
  }
};

}  // namespace

int __CfmC::update(int object, std::string instance, int operation, std::string leaf) {
  if (callback == nullptr) return C_RESULT_NO_CALLBACK;
  return callback(user, object, instance.c_str(), operation, leaf.c_str());
}

void c_cfm_regist_observer(int id, c_cfm_callback callback, void* user) {
  ICfm* cfm = currentCfm();
  if (cfm == nullptr) return;

  // Everything is allocated before the service is called: a registered observer is always listed.
  std::list<__CfmC*> added;
  added.push_back(nullptr);
  __CfmC* observer = added.front() = new __CfmC;
  observer->user = user;
  observer->callback = callback;
  observer->id = id;
  cfm->registObserver(id, observer);
  g_cfm_observers.splice(g_cfm_observers.end(), added);

  // Overwrites user data already stored under these names: it belongs to a previous observer.
  std::unique_ptr<__CfmC, Unregister> registration(observer, Unregister{cfm});
  NewNames names(id);
  walkInstances(*cfm, id, [&names](const std::string& name) { names.add(name); });
  names.keep();
  static_cast<void>(registration.release());
}

void c_cfm_unregist_observer(int id, c_cfm_callback callback) {
  ICfm* cfm = currentCfm();
  if (cfm == nullptr) return;

  __CfmC* observer = firstObserver([id, callback](const __CfmC* candidate) {
    return candidate->callback == callback && candidate->id == id;
  });
  if (observer == nullptr) return;

  c_dbc_db_release_all(id);
  Unregister{cfm}(observer);
}

c_cfm_callback c_cfm_get_regist_observer_callback(int id) {
  // The service is not used, but without a service there are no observers.
  if (currentCfm() == nullptr) return nullptr;

  const __CfmC* observer = firstObserver([id](const __CfmC* candidate) { return candidate->id == id; });
  return observer != nullptr ? observer->callback : nullptr;
}
