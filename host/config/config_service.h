// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_CONFIG_CONFIG_SERVICE_H
#define CPP2C_HOST_CONFIG_CONFIG_SERVICE_H

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "binding/context.h"
#include "host/config/changes.h"
#include "host/config/loans.h"
#include "host/config/tree.h"
#include "host/registration/observer_list.h"

namespace host {

// The configuration tree with checked writes, observers and computed values. Observers and providers may call
// every operation. `number` is the number of an object. A change is made even if the call of an observer
// fails; its operation then returns C_RESULT_SYSTEM_CALL.
class ConfigService final : public ICfm {
 public:
  // Saves the changes of a tree permanently, all or none. Returns a result code. Is also called without
  // changes.
  using Store = std::function<int(Tree& tree, const Changes& changes)>;

  ConfigService(Tree tree, Registry& registry, Store store = saveNothing);

  int getAttr(int number, void* out) override;  // `out`: a 32-bit word
  int setAttr(int number, int value) override;
  int registObserver(int number, ICfmObserver* observer) override;
  int unregistObserver(int number, ICfmObserver* observer) override;
  int registDataProvider(int number, IDyncDataProvider* provider) override;  // replaces the earlier one

  ICfmNode* getNode(std::string fullname) override;
  int releaseNode(ICfmNode* node) override;
  ICfmIterator* instanceIterator(int number) override;
  int releaseIterator(ICfmIterator* iterator) override;

  int setValue(std::string fullname, std::string value, int option) override;  // a c_cfm_option, or 0
  int addInstance(const std::string& instance);                                // of a dynamic object
  int deleteInstance(const std::string& instance);                             // of a dynamic object
  int save(int scope) override;  // `scope` must be 1: all changes

  const Tree& tree() const { return tree_; }
  const Leaf* findLeaf(std::string_view fullname);  // null if it does not exist

  // The value of an existing leaf. If the call of its provider fails, the value is that without a provider.
  // `place` is where the leaf was found; instances may have been added and deleted since then.
  std::string value(const std::string& fullname);
  std::string valueAt(Tree::Place place, const std::string& fullname);

  // Sets the function to call with each change, before its observers are called.
  struct Change {
    const Object& object;
    const std::string& instance;
    int operation;            // a c_cfm_operation
    const std::string& leaf;  // "" unless a leaf has changed
  };
  void onChange(std::function<void(const Change&)> callback) { on_change_ = std::move(callback); }

  int reserved4() override { return 0; }
  int reserved6() override { return 0; }
  int reserved11() override { return 0; }
  int reserved12() override { return 0; }
  int reserved13() override { return 0; }
  int reserved16() override { return 0; }

 private:
  std::string computedValue(const Tree::Place& place, const std::string& fullname);

  static int saveNothing(Tree& tree, const Changes& changes);

  int write(const Tree::Place& place, std::string value);
  int notify(const Object& object, const std::string& instance, int operation, const std::string& leaf);

  struct Provider {
    IDyncDataProvider* provider;
    RegistrationHandle registration;
  };

  Tree tree_;
  Changes changes_;
  const Store store_;
  Registry& registry_;
  ObserverList<int, ICfmObserver> observers_;
  std::map<int, Provider> providers_;
  Loans<ConfigNode> nodes_;
  Loans<InstanceIterator> iterators_;
  std::function<void(const Change&)> on_change_ = [](const Change&) {};
};

}  // namespace host

#endif
