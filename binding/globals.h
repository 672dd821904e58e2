// SPDX-License-Identifier: MIT
// The process-wide state of the binding, in order of construction. Nothing here is locked: one thread at a
// time.
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

// Opened by getContext(), closed by releaseContext().
extern DllMgr* g_context_library;

// The one adapter behind the context's timer; lives as long as the library is loaded.
extern __NtpTimerCB g_timer;

// Adapters in order of registration. Each container owns what it holds until the matching unregistration or
// c_context_deinit(); when the library is unloaded only the containers go.
extern std::list<__CfmC*> g_cfm_observers;
extern std::list<__EventC*> g_event_observers;
extern std::list<__DataProvider*> g_data_providers;
extern std::map<int, __LoopData*> g_fd_watches;

// Outlives c_context_deinit(), and so do its entries, also those that count 0.
extern std::map<std::string, int> g_reference_counts;

// The first one registered, until c_context_deinit().
extern __MasterObserver* g_master_observer;

#endif
