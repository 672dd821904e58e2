// SPDX-License-Identifier: MIT
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <utility>

#include "tests/faults/configuration.h"
#include "tests/faults/subject.h"

namespace faults {
namespace {

// A service without faults, which runs until the object is deleted.
class Service {
 public:
  explicit Service(const std::string& folder);
  ~Service();
  Service(const Service&) = delete;
  Service& operator=(const Service&) = delete;

 private:
  pid_t program_;
};

Service::Service(const std::string& folder) {
  std::filesystem::create_directory(folder);
  writeConfiguration(folder + "/config.json");
  program_ = fork();
  if (program_ < 0) throw std::runtime_error("cannot start the service");
  if (program_ == 0) {
    if (chdir(folder.c_str()) != 0) _exit(126);
    execl(SESSION, SESSION, "serve", "report", "control", "--config", "config.json", "--state", "state.db",
          "--log-file", "log", "--control", "control", nullptr);
    _exit(127);
  }
  for (int i = 0; readText(folder + "/report").find("load 0") == std::string::npos; i++) {
    if (i == 2000) throw std::runtime_error("the service does not start");
    usleep(10000);
  }
}

Service::~Service() {
  kill(program_, SIGTERM);
  std::string failure;
  exitStatusOf(program_, failure);
}

class ClientCommand final : public ISubject {
 public:
  ClientCommand(std::shared_ptr<Service> service, std::string folder, Command arguments)
      : service_(std::move(service)), folder_(std::move(folder)), arguments_(std::move(arguments)) {
    std::filesystem::create_directory(folder_);
  }

  std::string name() const override {
    std::string name = "contextctl";
    for (const std::string& argument : arguments_) name += ' ' + argument;
    return name;
  }

  Counts runWithoutFault() override {
    const int status = run({});
    if (status != 0) throw std::runtime_error(name() + " without a fault: " + readText(folder_ + "/err"));
    expected_ = readText(folder_ + "/out");
    takeCounts(folder_);
    run({});
    return takeCounts(folder_);
  }

  std::string runWith(const Fault& fault) override {
    takeCounts(folder_);
    const int status = run(fault);
    if (!failure_.empty()) return failure_ + errors();
    const std::vector<std::string> errors = readLines(folder_ + "/err");
    if (status == 0) {
      if (!errors.empty()) return "succeeds, but prints: " + errors.front();
      return isExpected(readText(folder_ + "/out")) ? "" : "succeeds with another output";
    }
    if (status > 3) return "ends with status " + std::to_string(status);
    // A report of "inspect" has the error of a file that cannot be read.
    const bool is_in_report =
        readText(folder_ + "/out").find(std::strerror(fault.error)) != std::string::npos;
    return errors.size() == 1 || is_in_report
               ? ""
               : "prints " + std::to_string(errors.size()) + " lines of errors";
  }

  Counts takeCountsOfLastRun() override { return takeCounts(folder_); }

 private:
  int run(const Fault& fault) {
    Command command = {CONTEXTCTL, "--control", "../service/control", "--timeout", "5"};
    command.insert(command.end(), arguments_.begin(), arguments_.end());
    std::filesystem::remove(folder_ + "/exported.json");
    return exitStatusOf(start(command, folder_, fault), failure_);
  }

  std::string errors() const {
    const std::vector<std::string> lines = readLines(folder_ + "/err");
    return lines.empty() ? "" : "; " + lines.back();
  }

  // Times and counts differ from one run to the next, but not the number of lines.
  bool isExpected(const std::string& output) const {
    const bool varies = arguments_[0] == "stats" || arguments_[0] == "registrations";
    return varies ? std::count(output.begin(), output.end(), '\n') ==
                        std::count(expected_.begin(), expected_.end(), '\n')
                  : output == expected_;
  }

  const std::shared_ptr<Service> service_;
  const std::string folder_;
  const Command arguments_;
  std::string expected_;
  std::string failure_;
};

}  // namespace

std::vector<std::unique_ptr<ISubject>> clientCommands(const std::string& folder) {
  const auto service = std::make_shared<Service>(folder + "/service");
  const Command commands[] = {
      {"get", "Device.Session.Text", "Device.Session.Computed"},
      {"set", "Device.Session.Counter", "5"},
      {"list"},
      {"tree", "Device."},
      {"instances", "Device.Ports."},
      {"attribute", "1", "7"},
      {"event", "send", "session.event", "from the client"},
      {"save"},
      {"modules"},
      {"registrations"},
      {"stats"},
      {"export", "Device.", "exported.json"},
      {"--json", "list"},
      {"inspect", MODULE},
      {"completion", "bash"},
  };
  std::vector<std::unique_ptr<ISubject>> subjects;
  for (const Command& command : commands) {
    subjects.push_back(std::make_unique<ClientCommand>(service, folder + "/client", command));
  }
  return subjects;
}

}  // namespace faults
