// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_INSPECT_REPORT_H
#define CPP2C_CONTEXTCTL_INSPECT_REPORT_H

#include <iosfwd>
#include <string>
#include <vector>

namespace contextctl {

enum class Verdict { kOk, kNote, kWarning, kNo };

// One thing that was looked at.
struct Finding {
  Verdict verdict;
  std::string subject;
  std::string text;
};

// One position of an instance's virtual table.
struct Slot {
  int position;           // from 1
  std::string operation;  // expected there; empty: libcpp2c never calls it
  std::string symbol;     // what stands there; empty: no code
};

// All that is known of one library.
struct Report {
  std::string library;
  std::string against;  // the libcpp2c.so that it is to fit
  std::vector<Finding> findings;
  std::vector<Slot> slots;  // empty: it was not opened
};

bool fits(const Report& report);  // no finding says no
const char* nameOf(Verdict verdict);

void print(const Report& report, std::ostream& out);
void printJson(const Report& report, std::ostream& out);

}  // namespace contextctl

#endif
