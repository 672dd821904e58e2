// SPDX-License-Identifier: MIT
// Any text is a script that can be played, or is refused in one message that names its source.
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
  require(when.first >= 1 && when.times >= 1, "calls are counted from one");
}

void checkStep(const Step& step) {
  std::visit([](const auto& when) { checkWhen(when); }, step.when);
  if (std::holds_alternative<Answer>(step.what)) {
    require(std::holds_alternative<AtCall>(step.when), "an answer is that of a call");
  }
  if (const auto* outage = std::get_if<UnavailableFor>(&step.what)) {
    require(outage->duration.count() > 0, "an outage takes time");
  }
  if (const auto* outage = std::get_if<UnavailableCalls>(&step.what)) {
    require(outage->number > 0, "an outage takes calls");
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    for (const Step& step : parseScript(std::string(data, data + size), kSource)) checkStep(step);
  } catch (const util::Error& error) {
    require(error.code() == C_RESULT_PARAM, "what is refused is a parameter");
    require(std::strncmp(error.what(), kSource, std::strlen(kSource)) == 0, "a message names its source");
  }
  return 0;
}
