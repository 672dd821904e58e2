// SPDX-License-Identifier: MIT
#include "contextctl/inspect/operations.h"

namespace contextctl {

const std::vector<std::string>& operationsOf(LibraryKind kind) {
  static const std::vector<std::string> context = {
      "~IContext",
      "~IContext",
      "init",
      "load",
      "",
      "getLog",
      "getCfm",
      "getEvent",
      "getHeartbeat",
      "getLoop",
      "",
      "",
      "debugOut",
      "debugSwitch",
      "systemCall",
      "systemCall2",
      "popenCall",
      "",
      "registMasterObserver",
      "setTimer",
      "",
      "",
      "",
      "notifyDepends",
  };
  static const std::vector<std::string> module = {
      "~IModule", "~IModule",   "onLoad", "onStart",  "onConfig",
      "onRun",    "onUnconfig", "onStop", "onUnload", "recvDependence",
  };
  return kind == LibraryKind::kContext ? context : module;
}

}  // namespace contextctl
