// SPDX-License-Identifier: MIT
#include "host/strict/misuse.h"

#include <cstdio>
#include <cstdlib>

#include "binding/context.h"
#include "host/include/cpp2c_host.h"
#include "host/symbol/caller.h"
#include "host/symbol/symbol.h"
#include "util/text.h"

namespace host {

void Misuse::report(const std::string& what) const {
  log_.record("strict", C_LOG_WARNING, what.c_str());
  if (!fatal_) return;
  std::fprintf(stderr, "strict: %s\n", util::oneLine(what).c_str());
  std::abort();  // a debugger stops here, and a core file has the stack
}

void Misuse::reportCall(const std::string& what, const std::string& advice) const {
  reportCallFrom(callerOfTheContext(), what, advice);
}

void Misuse::reportCallFrom(const void* caller, const std::string& what, const std::string& advice) const {
  std::string text = what;
  if (caller != nullptr) text += ", called by " + textOf(symbolAt(caller));
  if (!advice.empty()) text += "; " + advice;
  report(text);
}

}  // namespace host
