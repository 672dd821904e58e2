// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_LEAVES_NEAR_NAME_H
#define CPP2C_CONTEXTCTL_LEAVES_NEAR_NAME_H

#include <string>
#include <vector>

#include "contextctl/leaves/leaf.h"

namespace contextctl {

// Finds the name of a leaf, an instance or an object that was probably meant by a prefix with which no leaf
// begins. The first components may be missing from the prefix: "traffic" may mean "Gateway.Traffic.". Empty:
// none is similar.
std::string findNearName(const std::string& prefix, const std::vector<Leaf>& leaves);

}  // namespace contextctl

#endif
