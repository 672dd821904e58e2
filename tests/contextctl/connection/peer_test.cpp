// SPDX-License-Identifier: MIT
// The client sends nothing to a program of another user.
#include <stdlib.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "contextctl/connection/connection.h"
#include "tests/contextctl/contextctl_test.h"
#include "tests/host/support/child_process.h"

namespace contextctl {
namespace {

constexpr unsigned kNobody = 65534;

std::string received(int listener) {
  const int connection = accept(listener, nullptr, nullptr);
  std::string bytes;
  char part[1024];
  for (ssize_t size; (size = read(connection, part, sizeof part)) > 0;)
    bytes.append(part, static_cast<size_t>(size));
  return bytes;
}

// Occupies the name of the socket, and reports everything that its first client sends.
void listenAsNobody(const std::string& path, int output) {
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
  if (setgroups(0, nullptr) != 0 || setgid(kNobody) != 0 || setuid(kNobody) != 0) return;
  if (bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) return;
  if (listen(listener, 1) != 0) return;
  dprintf(output, "listening\n");
  dprintf(output, "received: %s\n", received(listener).c_str());
}

class PeerTest : public ContextctlTest {
 protected:
  void SetUp() override {
    if (geteuid() != 0) GTEST_SKIP() << "only root can run a program as another user";
    chmod(folder.path().c_str(), 0777);
  }

  void expectNothingSent(const std::vector<std::string>& arguments) {
    const std::string occupied = folder.file("occupied.sock");
    const host::ChildProcess stranger([&](int output) { listenAsNobody(occupied, output); });
    ASSERT_EQ(stranger.line(), "listening");
    expectOutcome(runIn({"CPP2C_CONTROL=" + occupied}, arguments), 3, "",
                  "contextctl: the program at " + occupied +
                      " runs as user 65534; run contextctl as that user if you trust it\n");
    EXPECT_EQ(stranger.line(), "received: ");
  }
};

TEST_F(PeerTest, ARequestIsNotSentToAnotherUser) {
  expectNothingSent({"set", "Device.Key", "secret"});
}

TEST_F(PeerTest, AStreamIsNotRequestedFromAnotherUser) {
  expectNothingSent({"follow", "changes", "--reveal"});
}

TEST_F(PeerTest, AProgramOfRootIsTrusted) {
  context.answer("POST /save", kDone);
  chmod(socket.c_str(), 0777);
  const std::string program = folder.file("contextctl");
  std::filesystem::copy(CPP2C_CONTEXTCTL, program);
  const std::string counts = folder.file("counts");  // of executed lines, which the user cannot add to ours
  std::filesystem::create_directory(counts);
  chmod(counts.c_str(), 0777);
  const Outcome outcome = runProgram(
      context.base(), {"setpriv", "--reuid=65534", "--clear-groups", program, "--control", socket, "save"},
      {"GCOV_PREFIX=" + counts}, nullptr);
  expectOutcome(outcome, 0, "", "");
}

TEST_F(PeerTest, AnOrdinaryUserHasNoDefaultInASharedFolder) {
  EXPECT_EQ(host::asOrdinaryUser([] {
              unsetenv("CPP2C_CONTROL");
              unsetenv("XDG_RUNTIME_DIR");
              return defaultSocket();
            }),
            "");
}

TEST_F(PeerTest, RootHasADefaultInAFolderOfItsOwn) {
  EXPECT_EQ(host::inChild([] {
              unsetenv("CPP2C_CONTROL");
              unsetenv("XDG_RUNTIME_DIR");
              return defaultSocket();
            }),
            "/run/cpp2c.sock");
}

}  // namespace
}  // namespace contextctl
