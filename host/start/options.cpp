// SPDX-License-Identifier: MIT
// getopt() is not used: it has one state per process, which belongs to the program.
#include "host/start/options.h"

#include <errno.h>

#include <algorithm>
#include <iterator>

#include "host/log/log_service.h"
#include "include_c"
#include "util/error.h"
#include "util/text.h"

namespace host {
namespace {

[[noreturn]] void fail(const std::string& message) {
  throw util::Error(C_RESULT_PARAM, std::string(program_invocation_short_name) + ": " + message);
}

int levelOf(const std::string& name) {
  const LogLevel* level = findLogLevel(name);
  if (level == nullptr)
    fail("unknown log level " + util::quoted(name) + "; known levels: " + logLevelNames());
  return level->number;
}

Clock::Kind clockOf(const std::string& name) {
  if (name == "real") return Clock::Kind::kReal;
  if (name == "virtual") return Clock::Kind::kVirtual;
  fail("unknown clock " + util::quoted(name) + "; known clocks: real, virtual");
}

struct Option {
  const char* name;
  void (*apply)(Options& options, const std::string& argument);
  bool has_argument = true;
};

constexpr Option kOptions[] = {
    {"--config", [](Options& options, const std::string& file) { options.config = file; }},
    {"--state", [](Options& options, const std::string& file) { options.state = file; }},
    {"--module", [](Options& options, const std::string& file) { options.modules.push_back(file); }},
    {"--control", [](Options& options, const std::string& path) { options.control = path; }},
    {"--log-level", [](Options& options, const std::string& level) { options.log_level = levelOf(level); }},
    {"--log-file", [](Options& options, const std::string& file) { options.log_file = file; }},
    {"--debug", [](Options& options, const std::string&) { options.debug = true; }, false},
    {"--strict", [](Options& options, const std::string&) { options.strictness = Strictness::kWarn; }, false},
    {"--strict=fatal", [](Options& options, const std::string&) { options.strictness = Strictness::kFatal; },
     false},
    {"--script", [](Options& options, const std::string& file) { options.script = file; }},
    {"--clock", [](Options& options, const std::string& clock) { options.clock = clockOf(clock); }},
};

const Option& findOption(const std::string& name) {
  const auto* option =
      std::find_if(std::begin(kOptions), std::end(kOptions), [&](const Option& o) { return name == o.name; });
  if (option == std::end(kOptions)) fail("unknown option " + util::quoted(name));
  return *option;
}

}  // namespace

Options readOptions(int argc, const char* const* argv) {
  Options options;
  if (argv == nullptr) return options;
  for (int i = 1; i < argc && std::string(argv[i]) != "--"; i++) {
    const Option& option = findOption(argv[i]);
    if (option.has_argument && (i + 1 == argc || *argv[i + 1] == '\0')) {
      fail("the option " + util::quoted(argv[i]) + " needs an argument");
    }
    option.apply(options, option.has_argument ? argv[++i] : "");
  }
  return options;
}

}  // namespace host
