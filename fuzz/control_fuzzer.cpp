// SPDX-License-Identifier: MIT
// Whatever a client of the control socket sends, and whenever it disconnects: it receives HTTP or nothing,
// and no secret unless it asks for one, and the next client gets its response.
#include <event2/event.h>
#include <stdlib.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/harness.h"
#include "host/clock/clock.h"
#include "host/config/config_service.h"
#include "host/control/control.h"
#include "host/event/event_service.h"
#include "host/heartbeat/heartbeat.h"
#include "host/include/cpp2c_host.h"
#include "host/lifecycle/lifecycle.h"
#include "host/log/log_service.h"
#include "host/loop/event_base.h"
#include "host/loop/event_loop.h"
#include "host/registration/call_history.h"
#include "host/registration/registry.h"
#include "host/start/configuration_file.h"

using namespace host;

namespace {

constexpr char kConfiguration[] = R"({"objects": [
  {"number": 1, "name": "T.", "leaves": {
    "S": {"type": "str"}, "B": {"type": "bool"}, "C": {"type": "int", "computed": true},
    "P": {"type": "pwd", "default": "secret"}}},
  {"number": 2, "name": "I.", "dynamic": true, "leaves": {"M": {"type": "uint"}}, "instances": {"I.a.": {}}}
]})";

// A temporary folder for the socket. It is removed when the process ends.
class Folder {
 public:
  Folder() { require(mkdtemp(path_.data()) != nullptr, "a temporary folder can be created"); }
  ~Folder() { rmdir(path_.c_str()); }

  std::string socket() const { return path_ + "/control"; }

 private:
  std::string path_ = "/tmp/cpp2c-fuzz-XXXXXX";
};

class Client {
 public:
  explicit Client(const std::string& path) : fd_(socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    require(connect(fd_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0,
            "a client can connect");
  }
  ~Client() { leave(); }
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;

  // Drops the bytes that do not fit into the socket's buffer.
  void send(const std::string& bytes) const { ::send(fd_, bytes.data(), bytes.size(), MSG_NOSIGNAL); }
  void leave() {
    if (fd_ >= 0) close(fd_);
    fd_ = -1;
  }

  // Returns whether there were bytes to read.
  bool read() {
    char bytes[16384];
    const ssize_t size = recv(fd_, bytes, sizeof bytes, 0);
    if (size > 0) received_.append(bytes, static_cast<std::size_t>(size));
    return size > 0;
  }
  const std::string& received() const { return received_; }

 private:
  int fd_;
  std::string received_;
};

struct Service {
  explicit Service(const std::string& path)
      : config(Tree(parseConfiguration(kConfiguration, "fuzz").objects), registry),
        control(ControlledServices{clock, config, events, log, lifecycle, registry, history, loop}, base,
                path) {}

  Clock clock;
  LogService log{C_LOG_DEBUG, "/dev/null", clock};
  Heartbeat heartbeat{log, std::chrono::hours(1)};
  Registry registry{heartbeat};
  CallHistory history{registry};
  ConfigService config;
  EventService events{"service", registry};
  EventBase base{log};
  EventLoop loop{base, registry};
  Lifecycle lifecycle{nullptr, {}, log, registry};
  Control control;
};

// Runs the loop and the client until neither has anything left to do.
void serve(Service& service, Client& client) {
  event_base* base = service.base.get();
  int idle = 0;
  while (idle < 2) {
    event_base_loop(base, EVLOOP_NONBLOCK);
    const bool busy = client.read() || event_base_get_num_events(base, EVENT_BASE_COUNT_ACTIVE) > 0;
    idle = busy ? 0 : idle + 1;
  }
}

void notifyFollowers(Service& service) {
  service.events.notify("event", "data", 0);
  service.config.setValue("T.P", "secret of later", 0);
  service.config.setValue("T.S", "text", 0);
  service.log.record("module", C_LOG_INFO, "text");
}

void checkNextClient(Service& service, const std::string& path) {
  Client client(path);
  client.send("GET /modules HTTP/1.1\r\n\r\n");
  serve(service, client);
  require(client.received().find(R"({"modules":[],"state":"idle"})") != std::string::npos,
          "the next client gets its response");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Folder folder;
  const std::string path = folder.socket();
  const std::string bytes(data, data + size);
  Service service(path);

  Client stays(path);
  stays.send(bytes);
  serve(service, stays);
  notifyFollowers(service);
  serve(service, stays);
  const std::string& received = stays.received();
  require(received.empty() || received.rfind("HTTP/", 0) == 0, "a response is HTTP");
  require(received.find("secret") == std::string::npos || bytes.find("reveal") != std::string::npos ||
              bytes.find("secret") != std::string::npos,
          "a secret is sent only on request");

  Client leaves(path);
  leaves.send(bytes);
  leaves.leave();
  notifyFollowers(service);
  checkNextClient(service, path);
  return 0;
}
