// SPDX-License-Identifier: MIT
// The services that a program receives. Each operation passes the guard, then calls the service itself.
#ifndef CPP2C_HOST_GUARD_GUARDED_SERVICES_H
#define CPP2C_HOST_GUARD_GUARDED_SERVICES_H

#include <string>
#include <utility>

#include "binding/context.h"
#include "host/guard/guard.h"

namespace host {

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

class GuardedEvent final : public IEvent {
 public:
  GuardedEvent(Guard& guard, IEvent& events) : guard_(guard), events_(events) {}

  int registObserver(std::string event, IEventObserver* observer) override {
    return guard_.enter({Operation::kRegistEventObserver, event},
                        [&] { return events_.registObserver(std::move(event), observer); });
  }

  int unregistObserver(std::string event, IEventObserver* observer) override {
    return guard_.enter({Operation::kUnregistEventObserver, event},
                        [&] { return events_.unregistObserver(std::move(event), observer); });
  }

  int notify(std::string event, std::string data, int flags) override {
    return guard_.enter({Operation::kNotify, event, data},
                        [&] { return events_.notify(std::move(event), std::move(data), flags); });
  }

 private:
  Guard& guard_;
  IEvent& events_;
};

class GuardedHeartbeat final : public IHeartbeat {
 public:
  GuardedHeartbeat(Guard& guard, IHeartbeat& heartbeat) : guard_(guard), heartbeat_(heartbeat) {}

  int lock() override {
    return guard_.enter(Operation::kLock, [&] { return heartbeat_.lock(); });
  }

  int unlock() override {
    return guard_.enter(Operation::kUnlock, [&] { return heartbeat_.unlock(); });
  }

  int reserved3() override { return heartbeat_.reserved3(); }
  int reserved4() override { return heartbeat_.reserved4(); }
  int reserved5() override { return heartbeat_.reserved5(); }
  int reserved6() override { return heartbeat_.reserved6(); }
  int reserved7() override { return heartbeat_.reserved7(); }
  int reserved8() override { return heartbeat_.reserved8(); }

 private:
  Guard& guard_;
  IHeartbeat& heartbeat_;
};

class GuardedLog final : public ILog {
 public:
  GuardedLog(Guard& guard, ILog& log) : guard_(guard), log_(log) {}

  int record(std::string module, int level, const char* text) override {
    return guard_.enter({Operation::kRecord, module, viewOf(text)},
                        [&] { return log_.record(std::move(module), level, text); });
  }

 private:
  Guard& guard_;
  ILog& log_;
};

class GuardedLoop final : public ILoop {
 public:
  GuardedLoop(Guard& guard, ILoop& loop) : guard_(guard), loop_(loop) {}

  int addFd(int fd, int events, ILoopData* handler) override {
    return guard_.enter(Operation::kAddFd, [&] { return loop_.addFd(fd, events, handler); });
  }

  int delFd(int fd) override {
    return guard_.enter(Operation::kDelFd, [&] { return loop_.delFd(fd); });
  }

  int run() override {
    return guard_.enter(Operation::kRun, [&] { return loop_.run(); });
  }

  int reserved5() override { return loop_.reserved5(); }

 private:
  Guard& guard_;
  ILoop& loop_;
};

}  // namespace host

#endif
