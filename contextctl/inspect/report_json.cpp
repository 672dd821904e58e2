// SPDX-License-Identifier: MIT
#include <ostream>

#include <nlohmann/json.hpp>

#include "contextctl/inspect/report.h"

namespace contextctl {

using Json = nlohmann::ordered_json;

void printJson(const Report& report, std::ostream& out) {
  Json findings = Json::array(), slots = Json::array();
  for (const Finding& finding : report.findings) {
    findings.push_back(
        {{"verdict", nameOf(finding.verdict)}, {"subject", finding.subject}, {"text", finding.text}});
  }
  for (const Slot& slot : report.slots)
    slots.push_back({{"position", slot.position}, {"operation", slot.operation}, {"symbol", slot.symbol}});
  const Json all = {{"library", report.library},
                    {"against", report.against},
                    {"fits", fits(report)},
                    {"findings", findings},
                    {"slots", slots}};
  out << all.dump(-1, ' ', false, Json::error_handler_t::replace) << '\n';
}

}  // namespace contextctl
