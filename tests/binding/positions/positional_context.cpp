// SPDX-License-Identifier: MIT
// The classes have the names of the framework's because the undefined-behaviour sanitizer compares the type
// names of the object and of the pointer.
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/binding/positions/positions.h"

namespace {

std::vector<std::string> g_entered;
void* g_adapter = nullptr;

std::string shown(const std::string& text) {
  return text;
}

std::string shown(const char* text) {
  return text;
}

template <typename Number>
std::string shown(Number number) {
  return std::to_string(number);
}

std::string shown(void* adapter) {
  g_adapter = adapter;
  return "adapter";
}

// Records the call of an operation and returns `result`.
template <typename Result, typename... Arguments>
Result answer(Result result, const char* interface, int position, Arguments... arguments) {
  std::string list;
  for (const std::string& argument : std::vector<std::string>{shown(arguments)...}) {
    list += (list.empty() ? "" : ", ") + argument;
  }
  g_entered.push_back(interface + (' ' + std::to_string(position)) + " (" + list + ')');
  return result;
}

// Records a call and returns ten times the position, so that each result is different.
template <typename... Arguments>
int enter(const char* interface, int position, Arguments... arguments) {
  return answer(position * 10, interface, position, arguments...);
}

}  // namespace

class ILog {
 public:
  virtual ~ILog() = default;
  virtual int at3(std::string module, int level, const char* text) {
    return enter("ILog", 3, module, level, text);
  }
};

class ICfmNode {
 public:
  virtual ~ICfmNode() = default;
  virtual std::string at3() { return answer("str", "ICfmNode", 3); }
  virtual std::string at4() { return answer("text", "ICfmNode", 4); }
  virtual int at5() { return enter("ICfmNode", 5); }
  virtual unsigned int at6() { return answer(4U, "ICfmNode", 6); }
};

class ICfmIterator {
 public:
  virtual ~ICfmIterator() = default;
  virtual int at3() { return answer(0, "ICfmIterator", 3); }
  virtual int at4() { return enter("ICfmIterator", 4); }
  virtual int at5() { return enter("ICfmIterator", 5); }
  virtual std::string at6() { return answer("A.1.", "ICfmIterator", 6); }
};

class ICfm {
 public:
  virtual ~ICfm() = default;
  virtual int at3(int node, void* out) { return enter("ICfm", 3, node, out); }
  virtual int at4() { return enter("ICfm", 4); }
  virtual int at5(int node, int value) { return enter("ICfm", 5, node, value); }
  virtual int at6() { return enter("ICfm", 6); }
  virtual int at7(int id, void* observer) { return enter("ICfm", 7, id, observer); }
  virtual int at8(int id, void* observer) { return enter("ICfm", 8, id, observer); }
  virtual void* at9(std::string fullname) { return answer(&node_, "ICfm", 9, fullname); }
  virtual int at10(void* node) { return answer(node == &node_ ? 0 : -1, "ICfm", 10); }
  virtual int at11() { return enter("ICfm", 11); }
  virtual int at12() { return enter("ICfm", 12); }
  virtual int at13() { return enter("ICfm", 13); }
  virtual void* at14(int id) { return answer(&iterator_, "ICfm", 14, id); }
  virtual int at15(void* iterator) { return answer(iterator == &iterator_ ? 0 : -1, "ICfm", 15); }
  virtual int at16() { return enter("ICfm", 16); }
  virtual int at17(std::string fullname, std::string value, int option) {
    return enter("ICfm", 17, fullname, value, option);
  }
  virtual int at18(int id, void* provider) { return enter("ICfm", 18, id, provider); }
  virtual int at19(int scope) { return enter("ICfm", 19, scope); }

 private:
  ICfmNode node_;
  ICfmIterator iterator_;
};

class IEvent {
 public:
  virtual ~IEvent() = default;
  virtual int at3(std::string event, void* observer) { return enter("IEvent", 3, event, observer); }
  virtual int at4(std::string event, void* observer) { return enter("IEvent", 4, event, observer); }
  virtual int at5(std::string event, std::string data, int flags) {
    return enter("IEvent", 5, event, data, flags);
  }
};

class IHeartbeat {
 public:
  virtual ~IHeartbeat() = default;
  virtual int at3() { return enter("IHeartbeat", 3); }
  virtual int at4() { return enter("IHeartbeat", 4); }
  virtual int at5() { return enter("IHeartbeat", 5); }
  virtual int at6() { return enter("IHeartbeat", 6); }
  virtual int at7() { return enter("IHeartbeat", 7); }
  virtual int at8() { return enter("IHeartbeat", 8); }
  virtual int at9() { return enter("IHeartbeat", 9); }
  virtual int at10() { return enter("IHeartbeat", 10); }
};

class ILoop {
 public:
  virtual ~ILoop() = default;
  virtual int at3(int fd, int events, void* handler) { return enter("ILoop", 3, fd, events, handler); }
  virtual int at4(int fd) { return enter("ILoop", 4, fd); }
  virtual int at5() { return enter("ILoop", 5); }
  virtual int at6() { return enter("ILoop", 6); }
};

class IContext {
 public:
  virtual ~IContext() = default;
  virtual int at3(std::uintptr_t a, std::uintptr_t b) { return enter("IContext", 3, a, b); }
  virtual int at4() { return enter("IContext", 4); }
  virtual int at5() { return enter("IContext", 5); }
  virtual void* at6() { return answer(&log_, "IContext", 6); }
  virtual void* at7() { return answer(&cfm_, "IContext", 7); }
  virtual void* at8() { return answer(&event_, "IContext", 8); }
  virtual void* at9() { return answer(&heartbeat_, "IContext", 9); }
  virtual void* at10() { return answer(&loop_, "IContext", 10); }
  virtual int at11() { return enter("IContext", 11); }
  virtual int at12() { return enter("IContext", 12); }
  virtual int at13(const char* file, int line, const char* text) {
    return enter("IContext", 13, file, line, text);
  }
  virtual int at14(int value) { return enter("IContext", 14, value); }
  virtual int at15(const char* command) { return enter("IContext", 15, command); }
  virtual int at16(const char* command) { return enter("IContext", 16, command); }
  virtual int at17(const char* command) { return enter("IContext", 17, command); }
  virtual int at18() { return enter("IContext", 18); }
  virtual int at19(void* observer) { return enter("IContext", 19, observer); }
  virtual int at20(int a, int b, int c, void* timer) { return enter("IContext", 20, a, b, c, timer); }
  virtual int at21() { return enter("IContext", 21); }
  virtual int at22() { return enter("IContext", 22); }
  virtual int at23() { return enter("IContext", 23); }
  virtual int at24(std::string name) { return enter("IContext", 24, name); }

 private:
  ILog log_;
  ICfm cfm_;
  IEvent event_;
  IHeartbeat heartbeat_;
  ILoop loop_;
};

class ILoopData {
 public:
  virtual ~ILoopData() = default;
  virtual int at3(short events, int value) = 0;
};

class ITimer {
 public:
  virtual ~ITimer() = default;
  virtual int at3(int value) = 0;
};

class IEventObserver {
 public:
  virtual ~IEventObserver() = default;
  virtual int at3(std::string event, std::string data, std::string source) = 0;
};

class ICfmObserver {
 public:
  virtual ~ICfmObserver() = default;
  virtual int at3(int id, std::string instance, int operation, std::string leaf) = 0;
};

class IDyncDataProvider {
 public:
  virtual std::string at1(int id, std::string instance, std::string leaf) = 0;

 protected:
  ~IDyncDataProvider() = default;
};

class IBootContext {
 public:
  virtual ~IBootContext() = default;
  virtual int load() { return 0; }
  virtual int start() { return 0; }
  virtual int config(std::string /*name*/, int /*arg*/) { return 0; }
  virtual int run() { return 0; }
  virtual int unconfig(std::string /*name*/, int /*arg*/) { return 0; }
  virtual int stop() { return 0; }
  virtual int unload() { return 0; }
  virtual int dependence(std::string /*name*/) { return 0; }
};

class IModule : public IBootContext {
 public:
  ~IModule() override { enter("IModule", 1); }
};

std::vector<std::string> takeEntered() {
  return std::exchange(g_entered, {});
}

void* lastAdapter() {
  return g_adapter;
}

void* newModule() {
  return std::make_unique<IModule>().release();
}

int enterLoopData3(void* object, short events, int value) {
  return static_cast<ILoopData*>(object)->at3(events, value);
}

int enterTimer3(void* object, int value) {
  return static_cast<ITimer*>(object)->at3(value);
}

int enterEventObserver3(void* object, const std::string& event, const std::string& data,
                        const std::string& source) {
  return static_cast<IEventObserver*>(object)->at3(event, data, source);
}

int enterCfmObserver3(void* object, int id, const std::string& instance, int operation,
                      const std::string& leaf) {
  return static_cast<ICfmObserver*>(object)->at3(id, instance, operation, leaf);
}

std::string enterDyncDataProvider1(void* object, int id, const std::string& instance,
                                   const std::string& leaf) {
  return static_cast<IDyncDataProvider*>(object)->at1(id, instance, leaf);
}

int enterBootContext(void* object, int position) {
  auto* participant = static_cast<IBootContext*>(object);
  switch (position) {
    case 3:
      return participant->load();
    case 4:
      return participant->start();
    case 5:
      return participant->config("name", 9);
    case 6:
      return participant->run();
    case 7:
      return participant->unconfig("name", 9);
    case 8:
      return participant->stop();
    case 9:
      return participant->unload();
    default:
      return participant->dependence("name");
  }
}

#pragma GCC visibility push(default)
extern "C" {
void* getInstance(void* caller);
void relInstance(void* instance);
}
#pragma GCC visibility pop

void* getInstance(void* /*caller*/) {
  static IContext context;
  return &context;
}

void relInstance(void* /*instance*/) {}
