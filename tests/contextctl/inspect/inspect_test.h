// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_CONTEXTCTL_INSPECT_INSPECT_TEST_H
#define CPP2C_TESTS_CONTEXTCTL_INSPECT_INSPECT_TEST_H

#include <string>
#include <vector>

#include "contextctl/inspect/inspect.h"

namespace contextctl {

using Findings = std::vector<std::string>;

inline std::string inspected(const std::string& name) {
  return CPP2C_INSPECTED "/lib" + name + ".so";
}

inline InspectOptions optionsFor(const std::string& library) {
  InspectOptions options;
  options.library = library;
  options.against = CPP2C_LIBRARY;
  return options;
}

// The findings of a report about one subject, as "verdict: text".
inline Findings findingsOn(const std::string& subject, const Report& report) {
  Findings found;
  for (const Finding& finding : report.findings)
    if (finding.subject == subject) found.push_back(nameOf(finding.verdict) + (": " + finding.text));
  return found;
}

inline Findings findingsOn(const std::string& subject, const InspectOptions& options) {
  return findingsOn(subject, inspect(options));
}

inline Findings findingsOn(const std::string& subject, const std::string& name) {
  return findingsOn(subject, optionsFor(inspected(name)));
}

}  // namespace contextctl

#endif
