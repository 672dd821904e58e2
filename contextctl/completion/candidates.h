// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_COMPLETION_CANDIDATES_H
#define CPP2C_CONTEXTCTL_COMPLETION_CANDIDATES_H

#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace contextctl {

// Returns the completions of the last word, which may be empty: commands, options, and names from the
// context. Without an answer from the context there are no names. nullopt: complete a file name.
std::optional<std::vector<std::string>> findCandidates(const CLI::App& app,
                                                       const std::vector<std::string>& words);

}  // namespace contextctl

#endif
