// SPDX-License-Identifier: MIT
// Makes calls of the allocator and of the system fail, one in each run of a program.
#include <stdlib.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <map>
#include <random>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "tests/faults/subject.h"

namespace faults {
namespace {

constexpr const char* kUsage =
    R"(Usage: run_faults [--sample N] [--seed S] [--call NAME] [--from N] session|client

Runs the session, or each command of the client, once for each of its calls of the allocator and of the system,
and makes that call fail. Prints each fault after which the program does not behave as documented.
  --sample N   choose N of the runs at random
  --seed S     the seed of the choice; by default it is chosen and printed
  --call NAME  only the calls of this name
  --from N     begin with the Nth call
  --known yes  print also the failures that are known, each with its reason
)";

struct Options {
  std::size_t sample = 0;  // all
  unsigned seed = std::random_device()();
  std::string call;
  unsigned long from = 1;
  bool known = false;
  std::string subject;
};

// The numbers of the errors with which a call fails.
std::vector<int> errorsOf(const std::string& call) {
  static const std::map<std::string, std::vector<int>> errors = {
      {"malloc", {ENOMEM}},
      {"open", {EMFILE, EACCES}},
      {"fopen", {EMFILE}},
      {"read", {EIO, EINTR}},
      {"write", {ENOSPC, EINTR}},
      {"pread", {EIO, EINTR}},
      {"pwrite", {ENOSPC, EIO}},
      {"readv", {ECONNRESET, EINTR}},
      {"writev", {EPIPE, EINTR}},
      {"fsync", {EIO, ENOSPC}},
      {"ftruncate", {ENOSPC}},
      {"mmap", {ENOMEM}},
      {"mremap", {ENOMEM}},
      {"fcntl", {EAGAIN, EIO}},
      {"socket", {EMFILE}},
      {"bind", {EADDRINUSE, EACCES}},
      {"listen", {EADDRINUSE}},
      {"accept", {EMFILE, ECONNABORTED}},
      {"connect", {ECONNREFUSED, EINTR}},
      {"send", {EPIPE, EINTR}},
      {"recv", {ECONNRESET, EINTR}},
      {"epoll_create", {EMFILE}},
      {"epoll_ctl", {ENOMEM, ENOSPC}},
      {"epoll_wait", {EINTR}},
      {"eventfd", {EMFILE}},
      {"timerfd_create", {EMFILE}},
      {"pipe", {EMFILE}},
      {"poll", {EINTR, ENOMEM}},
      {"fork", {EAGAIN}},
      {"posix_spawn", {EAGAIN, ENOMEM}},
      {"waitpid", {EINTR, ECHILD}},
      {"stat", {EACCES}},
      {"fstat", {EIO}},
      {"close", {EIO}},
      {"getcwd", {ENOENT}},
      {"getsockopt", {ENOBUFS}},
  };
  const auto found = errors.find(call);
  return found != errors.end() ? found->second : std::vector<int>{EIO};
}

std::vector<Fault> faultsIn(const Counts& counts, const Options& options) {
  std::vector<Fault> faults;
  for (const auto& [call, count] : counts) {
    if (!options.call.empty() && call != options.call) continue;
    for (unsigned long number = options.from; number <= count; number++) {
      for (const int error : errorsOf(call)) faults.push_back({call, number, error});
    }
  }
  return faults;
}

std::vector<Fault> chosenOf(std::vector<Fault> faults, std::size_t count, std::mt19937& generator) {
  if (count == 0 || faults.size() <= count) return faults;
  std::vector<Fault> chosen;
  std::sample(faults.begin(), faults.end(), std::back_inserter(chosen), count, generator);
  return chosen;
}

// The library that made the failed call; empty if no call failed.
std::string callerIn(const Counts& counts) {
  constexpr std::size_t kPrefix = sizeof "caller:" - 1;
  for (const auto& [name, count] : counts) {
    if (name.compare(0, kPrefix, "caller:") == 0)
      return std::filesystem::path(name.substr(kPrefix)).filename();
  }
  return "";
}

// Libraries of others that do not survive some failures.
struct KnownFailure {
  const char* call;
  const char* caller;  // the beginning of its name
  const char* reason;
};

constexpr KnownFailure kKnown[] = {
    {"malloc", "libdw", "; libdw fails assertions, ends the process, or closes descriptors of the program"},
    {"malloc", "libelf", "; see libdw"},
    {"read", "libevent", "; libevent ends the process if it cannot read its own socket"},
    {"malloc", "libevent", "; libevent uses a half-made HTTP connection"},
    {"malloc", "ld-linux", "; the loader ends the process if there is no memory for thread-local data"},
};

const char* reasonFor(const Fault& fault, const std::string& caller) {
  for (const KnownFailure& known : kKnown) {
    if (fault.call == known.call && caller.rfind(known.caller, 0) == 0) return known.reason;
  }
  return nullptr;
}

// Returns the number of faults after which the subject does not behave as documented.
int check(ISubject& subject, const Options& options, std::mt19937& generator) {
  const std::vector<Fault> all = faultsIn(subject.runWithoutFault(), options);
  int failures = 0;
  int known = 0;
  const std::vector<Fault> chosen = chosenOf(all, options.sample, generator);
  for (const Fault& fault : chosen) {
    const std::string failure = subject.runWith(fault);
    const std::string caller = callerIn(subject.takeCountsOfLastRun());
    if (failure.empty()) continue;
    const char* reason = reasonFor(fault, caller);
    reason != nullptr ? known++ : failures++;
    if (reason != nullptr && !options.known) continue;
    std::printf("%s: %s in %s: %s%s\n", subject.name().c_str(), textOf(fault).c_str(), caller.c_str(),
                failure.c_str(), reason != nullptr ? reason : "");
    std::fflush(stdout);
  }
  std::printf("%s: %zu of %zu faults, %d failures, %d known\n", subject.name().c_str(), chosen.size(),
              all.size(), failures, known);
  std::fflush(stdout);
  return failures;
}

int checkAll(const Options& options, const std::string& folder) {
  std::mt19937 generator(options.seed);
  if (options.sample != 0) std::printf("seed %u\n", options.seed);
  int failures = 0;
  if (options.subject == "session") return check(*session(folder), options, generator);
  for (const auto& subject : clientCommands(folder)) failures += check(*subject, options, generator);
  return failures;
}

Options parse(const std::vector<std::string>& arguments) {
  Options options;
  for (std::size_t i = 0; i < arguments.size(); i++) {
    const std::string& argument = arguments[i];
    if (argument.compare(0, 2, "--") != 0) {
      options.subject = argument;
      continue;
    }
    const std::string value = i + 1 < arguments.size() ? arguments[++i] : "";
    if (argument == "--sample")
      options.sample = std::stoul(value);
    else if (argument == "--seed")
      options.seed = static_cast<unsigned>(std::stoul(value));
    else if (argument == "--from")
      options.from = std::stoul(value);
    else if (argument == "--known")
      options.known = value == "yes";
    else if (argument == "--call")
      options.call = value;
    else
      throw std::invalid_argument(argument);
  }
  if (options.subject != "session" && options.subject != "client") throw std::invalid_argument("subject");
  return options;
}

}  // namespace
}  // namespace faults

int main(int argc, char** argv) {
  faults::Options options;
  try {
    options = faults::parse({argv + 1, argv + argc});
  } catch (const std::exception&) {
    std::fputs(faults::kUsage, stderr);
    return 2;
  }
  std::string folder = (std::filesystem::temp_directory_path() / "cpp2c-faults-XXXXXX").string();
  if (mkdtemp(folder.data()) == nullptr) return 3;
  int result = 3;
  try {
    result = faults::checkAll(options, folder) == 0 ? 0 : 1;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "run_faults: %s\n", error.what());
  }
  std::filesystem::remove_all(folder);
  return result;
}
