// SPDX-License-Identifier: MIT
#include "contextctl/inspect/report.h"

#include <algorithm>
#include <ostream>

#include "contextctl/output/table.h"
#include "contextctl/system/json.h"
#include "util/text.h"

namespace contextctl {
namespace {

using Json = nlohmann::ordered_json;

}  // namespace

bool fits(const Report& report) {
  return std::none_of(report.findings.begin(), report.findings.end(),
                      [](const Finding& finding) { return finding.verdict == Verdict::kNo; });
}

const char* nameOf(Verdict verdict) {
  switch (verdict) {
    case Verdict::kOk:
      return "ok";
    case Verdict::kNote:
      return "note";
    case Verdict::kWarning:
      return "warning";
    case Verdict::kNo:
      break;
  }
  return "no";
}

void print(const Report& report, std::ostream& out) {
  out << util::printable(report.library) << ", to fit " << util::printable(report.against) << '\n';
  Table findings({"VERDICT", "SUBJECT", "FINDING"});
  for (const Finding& finding : report.findings)
    findings.add({nameOf(finding.verdict), finding.subject, finding.text});
  findings.print(out);

  if (!report.slots.empty()) {
    out << '\n';
    Table slots({"POSITION", "OPERATION", "SYMBOL"});
    for (const Slot& slot : report.slots)
      slots.add({std::to_string(slot.position), slot.operation.empty() ? "-" : slot.operation, slot.symbol});
    slots.print(out);
  }
  out << '\n' << (fits(report) ? "It fits.\n" : "It does not fit.\n");
}

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
  out << printableJson(all.dump(-1, ' ', false, Json::error_handler_t::replace)) << '\n';
}

}  // namespace contextctl
