// SPDX-License-Identifier: MIT
// Any text is read as a valid script, or refused with one message that names its source.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <variant>

#include "fuzz/harness.h"
#include "host/script/script.h"
#include "include_c"
#include "util/error.h"

using namespace host;

namespace {

const char kSource[] = "script.json";

void checkWhen(const AtTime& when) {
  require(when.time.count() >= 0, "a time is not before the start");
}

void checkWhen(const AtCall& when) {
  require(when.first >= 1 && when.times >= 1, "calls are counted from 1");
}

void checkStep(const Step& step) {
  std::visit([](const auto& when) { checkWhen(when); }, step.when);
  if (std::holds_alternative<Answer>(step.action)) {
    require(std::holds_alternative<AtCall>(step.when), "an answer belongs to a call");
  }
  if (const auto* outage = std::get_if<UnavailableFor>(&step.action)) {
    require(outage->duration.count() > 0, "the duration of an outage is positive");
  }
  if (const auto* outage = std::get_if<UnavailableCalls>(&step.action)) {
    require(outage->number > 0, "the number of calls of an outage is positive");
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    for (const Step& step : parseScript(std::string(data, data + size), kSource)) checkStep(step);
  } catch (const util::Error& error) {
    require(error.code() == C_RESULT_PARAM, "a refused text has the code for a bad parameter");
    require(std::strncmp(error.what(), kSource, std::strlen(kSource)) == 0, "a message names its source");
  }
  return 0;
}
