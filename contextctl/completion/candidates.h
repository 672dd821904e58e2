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

// What may stand in place of the last of the words, which may be empty: commands and options as `app` defines
// them, names of leaves, instances and objects as the context knows them that the words speak of. None
// without such a context. Nothing at all: the name of a file.
std::optional<std::vector<std::string>> findCandidates(const CLI::App& app,
                                                       const std::vector<std::string>& words);

}  // namespace contextctl

#endif
