// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_PROCESS_PROCESSES_H
#define CPP2C_HOST_PROCESS_PROCESSES_H

class ILog;

namespace host {

// Runs shell commands and waits until the shell ends, whatever it leaves in the background. Both operations
// return the exit status, 128 + N if signal N ended the command, or a negative result code.
class Processes {
 public:
  explicit Processes(ILog& log) : log_(log) {}

  int run(const char* command);
  int runLogged(const char* command);  // writes each line of standard output to the log

 private:
  ILog& log_;
};

}  // namespace host

#endif
