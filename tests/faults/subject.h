// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_FAULTS_SUBJECT_H
#define CPP2C_TESTS_FAULTS_SUBJECT_H

#include <memory>
#include <string>
#include <vector>

#include "tests/faults/run_program.h"

namespace faults {

// A program whose calls are made to fail.
class ISubject {
 public:
  virtual ~ISubject() = default;

  virtual std::string name() const = 0;

  // Runs the program without a fault, and remembers its results as the expected ones.
  virtual Counts runWithoutFault() = 0;

  // Runs the program with one fault. Returns what is wrong, or an empty string.
  virtual std::string runWith(const Fault& fault) = 0;

  // The counts of the last runWith().
  virtual Counts takeCountsOfLastRun() = 0;
};

// A service that calls every C function: its process must not be ended by a signal, no state that was saved
// may be lost, and no result may differ without a result code, an exception, or a line in the log or on
// standard error.
std::unique_ptr<ISubject> session(const std::string& folder);

// The client's commands, each against a service without faults: the command must not be ended by a signal,
// and must print either what it prints without the fault or one line to standard error.
std::vector<std::unique_ptr<ISubject>> clientCommands(const std::string& folder);

}  // namespace faults

#endif
