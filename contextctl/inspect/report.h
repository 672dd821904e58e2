// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_INSPECT_REPORT_H
#define CPP2C_CONTEXTCTL_INSPECT_REPORT_H

#include <iosfwd>
#include <string>
#include <vector>

namespace contextctl {

enum class Verdict { kOk, kNote, kWarning, kNo };

// The result of one check.
struct Finding {
  Verdict verdict;
  std::string subject;
  std::string text;
};

// One entry of the virtual table of an instance.
struct Slot {
  int position;           // from 1
  std::string operation;  // expected; empty: libcpp2c never calls it
  std::string symbol;     // found; empty: no code
};

// The results of all checks of one library.
struct Report {
  std::string library;
  std::string against;  // the libcpp2c.so to fit
  std::vector<Finding> findings;
  std::vector<Slot> slots;  // empty: it was not loaded
};

bool fits(const Report& report);  // no verdict is kNo
const char* nameOf(Verdict verdict);

void print(const Report& report, std::ostream& out);
void printJson(const Report& report, std::ostream& out);

}  // namespace contextctl

#endif
