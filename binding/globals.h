// SPDX-License-Identifier: MIT
// The process-wide state of the binding, in order of construction. Not thread-safe.
#ifndef CPP2C_BINDING_GLOBALS_H
#define CPP2C_BINDING_GLOBALS_H

#include <list>
#include <map>
#include <string>

class DllMgr;
class __CfmC;
class __DataProvider;
class __EventC;
class __LoopData;
class __MasterObserver;
class __NtpTimerCB;

// Created by getContext(), deleted by releaseContext().
extern DllMgr* g_context_library;

// The only adapter for the context's timer. Exists as long as the library is loaded.
extern __NtpTimerCB g_timer;

// Adapters, in order of registration. Each container owns its adapters until they are unregistered or
// c_context_deinit() is called. Unloading the library destroys the containers but not the adapters.
extern std::list<__CfmC*> g_cfm_observers;
extern std::list<__EventC*> g_event_observers;
extern std::list<__DataProvider*> g_data_providers;
extern std::map<int, __LoopData*> g_fd_watches;

// Not cleared by c_context_deinit(). Entries whose count is 0 remain.
extern std::map<std::string, int> g_reference_counts;

// The master observer registered first; deleted by c_context_deinit().
extern __MasterObserver* g_master_observer;

#endif
