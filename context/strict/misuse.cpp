// SPDX-License-Identifier: MIT
#include "context/strict/misuse.h"

#include <cstdio>
#include <cstdlib>

#include "binding/context.h"
#include "context/include/cpp2c_host.h"
#include "context/one_line.h"
#include "context/symbol/caller.h"
#include "context/symbol/symbol.h"

void Misuse::report(const std::string& what) const {
  log_.record("strict", C_LOG_WARNING, what.c_str());
  if (!fatal_) return;
  std::fprintf(stderr, "strict: %s\n", oneLine(what).c_str());
  std::abort();  // a debugger stops here, and a core file shows the way
}

void Misuse::reportCall(const std::string& what) const {
  reportCall(what, callerOfTheContext());
}

void Misuse::reportCall(const std::string& what, const void* caller) const {
  report(caller != nullptr ? what + ", called by " + textOf(symbolAt(caller)) : what);
}
