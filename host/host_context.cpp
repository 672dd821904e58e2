// SPDX-License-Identifier: MIT
#include "host/host_context.h"

#include <errno.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>
#include <string>
#include <utility>

#include "host/guard/guard.h"
#include "host/host_services.h"
#include "host/start/configuration_file.h"
#include "host/start/options.h"
#include "include_c"
#include "util/error.h"
#include "util/text.h"

namespace host {
namespace {

constexpr int kOk = C_RESULT_OK;

// The C interface passes pointers as integers.
const char* const* pointerOf(std::uintptr_t word) {
  const char* const* pointer = nullptr;
  std::memcpy(&pointer, &word, sizeof pointer);
  return pointer;
}

Configuration configurationFor(const Options& options) {
  Configuration configuration;
  if (!options.config.empty()) configuration = readConfiguration(options.config);
  configuration.modules.insert(configuration.modules.end(), options.modules.begin(), options.modules.end());
  return configuration;
}

int failure(int code, const std::string& message) {
  std::fprintf(stderr, "%s\n", util::oneLine(message).c_str());
  return code;
}

// Makes a call to the services through their guard. Refuses it before init(), when there are none.
template <typename Function>
auto enter(const std::unique_ptr<HostServices>& services, const OperationCall& call, Function function) {
  if (services == nullptr) return refusal<decltype(function(*services))>(C_RESULT_NOT_INIT);
  return services->guard.enter(call, [&] { return function(*services); });
}

// The library has already deleted the callback's adapter, and unloads this library next: nothing could return
// from the callback.
[[noreturn]] void abortInside(const Registration& running) {
  const std::string text = "c_context_deinit() is called inside the callback " + textOf(running) +
                           "; call it after c_loop_run() has returned";
  std::fprintf(stderr, "%s\n", util::oneLine(text).c_str());
  std::abort();  // a core file has the stack
}

}  // namespace

HostContext::HostContext() = default;

// A forked process shares the loop's descriptors, the control socket and the state file with its parent, and
// would release what the parent still uses.
//
// Modules are closed with the services and may still call the context. reset() clears the pointer first, so
// such a call finds no services instead of partly destroyed ones.
HostContext::~HostContext() {
  if (services_ == nullptr) return;
  if (getpid() != services_->process) {
    static_cast<void>(services_.release());
    return;
  }
  if (const Registration* running = services_->registry.running()) abortInside(*running);
  services_.reset();
}

int HostContext::init(std::uintptr_t argc, std::uintptr_t argv) {
  try {
    return createServices(static_cast<int>(argc), pointerOf(argv));
  } catch (const std::bad_alloc&) {
    std::fprintf(stderr, "%s: out of memory\n", program_invocation_short_name);
    return C_RESULT_NO_MEMORY;
  }
}

int HostContext::createServices(int argc, const char* const* argv) {
  try {
    if (services_ != nullptr) {
      throw util::Error(C_RESULT_REDUNDANT, "the context is already initialised");
    }
    const Options options = readOptions(argc, argv);
    services_ = std::make_unique<HostServices>(this, options, configurationFor(options));
    return C_RESULT_OK;
  } catch (const util::Error& error) {
    return failure(error.code(), error.what());
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {  // must not reach the program, which is written in C
    return failure(C_RESULT_SYSTEM_CALL, std::string(program_invocation_short_name) + ": " + error.what());
  }
}

int HostContext::load() {
  return enter(services_, Operation::kLoad, [](HostServices& host) { return host.lifecycle.load(); });
}

ILog* HostContext::getLog() {
  return enter(services_, Operation::kGetLog, [](HostServices& host) { return &host.guarded_log; });
}

ICfm* HostContext::getCfm() {
  return enter(services_, Operation::kGetCfm, [](HostServices& host) { return &host.guarded_config; });
}

IEvent* HostContext::getEvent() {
  return enter(services_, Operation::kGetEvent, [](HostServices& host) { return &host.guarded_events; });
}

IHeartbeat* HostContext::getHeartbeat() {
  return enter(services_, Operation::kGetHeartbeat,
               [](HostServices& host) { return &host.guarded_heartbeat; });
}

ILoop* HostContext::getLoop() {
  return enter(services_, Operation::kGetLoop, [](HostServices& host) { return &host.guarded_loop; });
}

int HostContext::debugOut(const char* file, int line, const char* text) {
  return enter(services_, {Operation::kDebugOut, viewOf(file), viewOf(text)},
               [&](HostServices& host) { return host.log.debugOut(file, line, text); });
}

int HostContext::debugSwitch(int value) {
  return enter(services_, Operation::kDebugSwitch, [&](HostServices& host) {
    host.log.debugSwitch(value != 0);
    return kOk;
  });
}

int HostContext::systemCall(const char* command) {
  return enter(services_, {Operation::kSystemCall, {}, viewOf(command)},
               [&](HostServices& host) { return host.processes.run(command); });
}

int HostContext::systemCall2(const char* command) {
  return enter(services_, {Operation::kSystemCall2, {}, viewOf(command)},
               [&](HostServices& host) { return host.processes.run(command); });
}

int HostContext::popenCall(const char* command) {
  return enter(services_, {Operation::kPopenCall, {}, viewOf(command)},
               [&](HostServices& host) { return host.processes.runLogged(command); });
}

int HostContext::registMasterObserver(IBootContext* observer) {
  return enter(services_, Operation::kRegistMasterObserver,
               [&](HostServices& host) { return host.lifecycle.registMasterObserver(observer); });
}

int HostContext::setTimer(int first, int zero, int period, ITimer* timer) {
  return enter(services_, Operation::kSetTimer,
               [&](HostServices& host) { return host.timers.set(first, zero, period, timer); });
}

int HostContext::notifyDepends(std::string name) {
  return enter(services_, Operation::kNotifyDepends, [&](HostServices& host) {
    host.lifecycle.notifyDepends(name);
    return kOk;
  });
}

}  // namespace host
