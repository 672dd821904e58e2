// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_GUARD_GUARDED_CFM_H
#define CPP2C_HOST_GUARD_GUARDED_CFM_H

#include <string>
#include <utility>

#include "binding/context.h"
#include "host/guard/guard.h"

class GuardedCfm final : public ICfm {
 public:
  GuardedCfm(Guard& guard, ICfm& config) : guard_(guard), config_(config) {}

  int getAttr(int number, void* out) override {
    return guard_.enter(Operation::kGetAttr, [&] { return config_.getAttr(number, out); });
  }

  int setAttr(int number, int value) override {
    return guard_.enter(Operation::kSetAttr, [&] { return config_.setAttr(number, value); });
  }

  int registObserver(int number, ICfmObserver* observer) override {
    return guard_.enter(Operation::kRegistObserver, [&] { return config_.registObserver(number, observer); });
  }

  int unregistObserver(int number, ICfmObserver* observer) override {
    return guard_.enter(Operation::kUnregistObserver,
                        [&] { return config_.unregistObserver(number, observer); });
  }

  int registDataProvider(int number, IDyncDataProvider* provider) override {
    return guard_.enter(Operation::kRegistDataProvider,
                        [&] { return config_.registDataProvider(number, provider); });
  }

  ICfmNode* getNode(std::string fullname) override {
    return guard_.enter({Operation::kGetNode, fullname},
                        [&] { return config_.getNode(std::move(fullname)); });
  }

  int releaseNode(ICfmNode* node) override {
    return guard_.enter(Operation::kReleaseNode, [&] { return config_.releaseNode(node); });
  }

  ICfmIterator* instanceIterator(int number) override {
    return guard_.enter(Operation::kInstanceIterator, [&] { return config_.instanceIterator(number); });
  }

  int releaseIterator(ICfmIterator* iterator) override {
    return guard_.enter(Operation::kReleaseIterator, [&] { return config_.releaseIterator(iterator); });
  }

  int setValue(std::string fullname, std::string value, int option) override {
    return guard_.enter({Operation::kSetValue, fullname, value},
                        [&] { return config_.setValue(std::move(fullname), std::move(value), option); });
  }

  int save(int scope) override {
    return guard_.enter(Operation::kSave, [&] { return config_.save(scope); });
  }

  int reserved4() override { return config_.reserved4(); }
  int reserved6() override { return config_.reserved6(); }
  int reserved11() override { return config_.reserved11(); }
  int reserved12() override { return config_.reserved12(); }
  int reserved13() override { return config_.reserved13(); }
  int reserved16() override { return config_.reserved16(); }

 private:
  Guard& guard_;
  ICfm& config_;
};

#endif
