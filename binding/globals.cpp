// SPDX-License-Identifier: MIT
#include "binding/globals.h"

#include "binding/timer.h"

// Constructed in this order, destroyed in reverse order when the library is unloaded.
DllMgr* g_context_library = nullptr;
__NtpTimerCB g_timer;
std::list<__CfmC*> g_cfm_observers;
std::list<__EventC*> g_event_observers;
std::list<__DataProvider*> g_data_providers;
std::map<int, __LoopData*> g_fd_watches;
std::map<std::string, int> g_reference_counts;
__MasterObserver* g_master_observer = nullptr;
