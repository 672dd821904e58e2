// SPDX-License-Identifier: MIT
// getopt() is not used: it has one state per process, which belongs to the program.
#include "host/start/options.h"

#include <errno.h>

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "host/log/log_service.h"
#include "include_c"
#include "util/error.h"
#include "util/similar_name.h"
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

Strictness strictnessOf(const std::string& name) {
  if (name.empty()) return Strictness::kWarn;
  if (name == "fatal") return Strictness::kFatal;
  fail("unknown strictness " + util::quoted(name) + "; known: fatal");
}

enum class Takes { kArgument, kNothing, kArgumentAfterEquals };

struct Option {
  const char* name;
  void (*apply)(Options& options, const std::string& argument);
  Takes takes = Takes::kArgument;
};

constexpr Option kOptions[] = {
    {"--config", [](Options& options, const std::string& file) { options.config = file; }},
    {"--state", [](Options& options, const std::string& file) { options.state = file; }},
    {"--module", [](Options& options, const std::string& file) { options.modules.push_back(file); }},
    {"--control", [](Options& options, const std::string& path) { options.control = path; }},
    {"--log-level", [](Options& options, const std::string& level) { options.log_level = levelOf(level); }},
    {"--log-file", [](Options& options, const std::string& file) { options.log_file = file; }},
    {"--log-reopen", [](Options& options, const std::string&) { options.log_reopen = true; },
     Takes::kNothing},
    {"--debug", [](Options& options, const std::string&) { options.debug = true; }, Takes::kNothing},
    {"--strict",
     [](Options& options, const std::string& strictness) { options.strictness = strictnessOf(strictness); },
     Takes::kArgumentAfterEquals},
    {"--script", [](Options& options, const std::string& file) { options.script = file; }},
    {"--clock", [](Options& options, const std::string& clock) { options.clock = clockOf(clock); }},
};

[[noreturn]] void failUnknown(const std::string& name) {
  util::SimilarName similar(name);
  for (const Option& option : kOptions) similar.consider(option.name);
  fail("unknown option " + util::quoted(name) +
       (similar.best().empty() ? "" : "; did you mean " + util::quoted(similar.best()) + '?'));
}

const Option& findOption(const std::string& name) {
  const auto* option =
      std::find_if(std::begin(kOptions), std::end(kOptions), [&](const Option& o) { return name == o.name; });
  if (option == std::end(kOptions)) failUnknown(name);
  return *option;
}

const std::string& notEmpty(const Option& option, const std::string& argument) {
  if (argument.empty()) fail("the option " + util::quoted(option.name) + " needs an argument");
  return argument;
}

// The arguments of the command line, up to "--".
class Arguments {
 public:
  Arguments(int count, const char* const* arguments) : next_(arguments), end_(arguments + count) {}

  bool hasNext() const { return next_ < end_ && *next_ != nullptr && std::string(*next_) != "--"; }

  // Applies the next option: "NAME", "NAME ARGUMENT" or "NAME=ARGUMENT".
  void applyNext(Options& options) {
    const std::string text = *next_++;
    const std::size_t equals = text.find('=');
    const Option& option = findOption(text.substr(0, equals));
    option.apply(options, equals == std::string::npos ? argumentAfter(option)
                                                      : argumentOf(option, text.substr(equals + 1)));
  }

 private:
  std::string argumentAfter(const Option& option) {
    if (option.takes != Takes::kArgument) return "";
    return notEmpty(option, next_ < end_ && *next_ != nullptr ? *next_++ : "");
  }

  static std::string argumentOf(const Option& option, const std::string& argument) {
    if (option.takes == Takes::kNothing) {
      fail("the option " + util::quoted(option.name) + " takes no argument");
    }
    return notEmpty(option, argument);
  }

  const char* const* next_;
  const char* const* end_;
};

}  // namespace

Options readOptions(int argc, const char* const* argv) {
  Options options;
  if (argv == nullptr || argc < 1) return options;
  Arguments arguments(argc - 1, argv + 1);
  while (arguments.hasNext()) arguments.applyNext(options);
  if (options.log_reopen && options.log_file.empty()) {
    fail("the option \"--log-reopen\" needs the option \"--log-file\"");
  }
  return options;
}

}  // namespace host
