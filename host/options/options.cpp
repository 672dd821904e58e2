// SPDX-License-Identifier: MIT
// getopt() is not used: its state is the process's, and so the program's own.
#include "host/options/options.h"

#include <errno.h>

#include <algorithm>
#include <iterator>

#include "host/log/log_level.h"
#include "host/start_error.h"
#include "include_c"
#include "util/text.h"

namespace {

[[noreturn]] void refuse(const std::string& message) {
  throw StartError(C_RESULT_PARAM, std::string(program_invocation_short_name) + ": " + message);
}

int levelOf(const std::string& name) {
  const LogLevel* level = findLogLevel(name);
  if (level == nullptr) refuse(util::quoted(name) + " is not a log level: " + logLevelNames());
  return level->number;
}

Clock::Kind clockOf(const std::string& name) {
  if (name == "real") return Clock::Kind::kReal;
  if (name == "virtual") return Clock::Kind::kVirtual;
  refuse(util::quoted(name) + " is not a clock: real, virtual");
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
  if (option == std::end(kOptions)) refuse("unknown option " + util::quoted(name));
  return *option;
}

}  // namespace

Options readOptions(int argc, const char* const* argv) {
  Options options;
  if (argv == nullptr) return options;
  for (int i = 1; i < argc && std::string(argv[i]) != "--"; i++) {
    const Option& option = findOption(argv[i]);
    if (option.has_argument && (i + 1 == argc || *argv[i + 1] == '\0')) {
      refuse(std::string("option \"") + argv[i] + "\" needs an argument");
    }
    option.apply(options, option.has_argument ? argv[++i] : "");
  }
  return options;
}
