// SPDX-License-Identifier: MIT
#include "contextctl/commands/commands.h"

#include <memory>
#include <ostream>

#include "contextctl/commands/command_set.h"
#include "contextctl/completion/candidates.h"
#include "contextctl/completion/scripts.h"
#include "util/text.h"

namespace contextctl {
namespace {

ExitStatus printCandidates(const Session& session, const CLI::App& app,
                           const std::vector<std::string>& words) {
  const auto candidates = findCandidates(app, words);
  if (!candidates) return kExitNo;
  for (const std::string& candidate : *candidates)
    if (util::printable(candidate) == candidate) session.out() << candidate << '\n';
  return kExitOk;
}

// For the scripts only: the help does not show it.
void addComplete(CommandSet& commands) {
  const auto words = std::make_shared<std::vector<std::string>>();
  commands
      .add("complete", "", "",
           [words, &app = commands.app()](const Session& session) {
             return printCandidates(session, app, *words);
           })
      .accept("WORD", *words, "The words after \"contextctl\"")
      .inSection("");
}

}  // namespace

void addCompletionCommands(CommandSet& commands) {
  const auto shell = std::make_shared<std::string>();
  commands
      .add("completion", "Print the completion script of a shell",
           "  source <(contextctl completion bash)\n  contextctl completion fish | source",
           [=](const Session& session) { session.out() << completionScript(*shell); })
      .require("SHELL", *shell, "The shell")
      .oneOf({"bash", "zsh", "fish"});
  addComplete(commands);
}

}  // namespace contextctl
