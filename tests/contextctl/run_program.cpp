// SPDX-License-Identifier: MIT
#include "tests/contextctl/run_program.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

#include <gtest/gtest.h>

namespace contextctl {
namespace {

[[noreturn]] void execute(const std::vector<std::string>& words, const std::vector<std::string>& environment,
                          int out, int err) {
  setpgid(0, 0);                                    // so that its children can be killed with it
  dup2(open("/dev/null", O_RDONLY), STDIN_FILENO);  // not the terminal of the test
  dup2(out, STDOUT_FILENO);
  dup2(err, STDERR_FILENO);
  for (const std::string& variable : environment) putenv(const_cast<char*>(variable.c_str()));
  std::vector<char*> pointers;
  for (const std::string& word : words) pointers.push_back(const_cast<char*>(word.c_str()));
  pointers.push_back(nullptr);
  execvp(pointers[0], pointers.data());
  _exit(127);
}

class Run;

// One output of the program.
struct Output {
  Run* run;
  std::string* text;
  int fd = -1;
  event* watch = nullptr;
};

class Run {
 public:
  Run(event_base* base, const std::vector<std::string>& words, const std::vector<std::string>& environment,
      const OnOutput& on_output);
  Outcome finish(const timeval& longest);

 private:
  void watch(Output& output, int fd);
  static void onReadable(int fd, short events, void* user);
  static void onDeadline(int fd, short events, void* user);
  void close(Output& output);

  event_base* base_;
  const OnOutput& on_output_;
  Outcome outcome_;
  Output outputs_[2] = {{this, &outcome_.out}, {this, &outcome_.err}};
  pid_t process_ = -1;
  int open_ = 0;
};

Run::Run(event_base* base, const std::vector<std::string>& words, const std::vector<std::string>& environment,
         const OnOutput& on_output)
    : base_(base), on_output_(on_output) {
  int out[2] = {}, err[2] = {};
  if (pipe2(out, O_CLOEXEC) != 0 || pipe2(err, O_CLOEXEC) != 0) std::abort();
  process_ = fork();
  if (process_ == -1) std::abort();
  if (process_ == 0) execute(words, environment, out[1], err[1]);
  ::close(out[1]);
  ::close(err[1]);
  watch(outputs_[0], out[0]);
  watch(outputs_[1], err[0]);
}

void Run::watch(Output& output, int fd) {
  output.fd = fd;
  output.watch = event_new(base_, fd, EV_READ | EV_PERSIST, onReadable, &output);
  event_add(output.watch, nullptr);
  open_++;
}

void Run::onReadable(int fd, short, void* user) {
  auto& output = *static_cast<Output*>(user);
  char buffer[4096];
  const ssize_t size = read(fd, buffer, sizeof buffer);
  if (size <= 0) return output.run->close(output);
  output.text->append(buffer, static_cast<size_t>(size));
  if (output.run->on_output_) output.run->on_output_(output.run->process_, output.run->outcome_);
}

void Run::close(Output& output) {
  event_free(output.watch);
  ::close(output.fd);
  open_--;
}

void Run::onDeadline(int, short, void* user) {
  ADD_FAILURE() << "the program does not end";
  kill(-static_cast<Run*>(user)->process_, SIGKILL);
}

Outcome Run::finish(const timeval& longest) {
  event* timer = evtimer_new(base_, onDeadline, this);
  event_add(timer, &longest);
  while (open_ > 0) event_base_loop(base_, EVLOOP_ONCE);
  event_free(timer);
  int status = 0;
  waitpid(process_, &status, 0);
  if (WIFEXITED(status)) outcome_.status = WEXITSTATUS(status);
  return outcome_;
}

}  // namespace

Outcome runProgram(event_base* base, const std::vector<std::string>& words,
                   const std::vector<std::string>& environment, const OnOutput& on_output,
                   const timeval& longest) {
  return Run(base, words, environment, on_output).finish(longest);
}

}  // namespace contextctl
