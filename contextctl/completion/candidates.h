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

// The completions of the last word, which may be empty: commands and options of `app`, and names of leaves,
// instances and objects of the context that the words select; no names if it does not answer. Returns nullopt
// if the word is a file name.
std::optional<std::vector<std::string>> findCandidates(const CLI::App& app,
                                                       const std::vector<std::string>& words);

}  // namespace contextctl

#endif
