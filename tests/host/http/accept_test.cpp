// SPDX-License-Identifier: MIT
// Accepting clients of the control socket at the limits of connections and of descriptors.
#include <sys/resource.h>

#include <algorithm>
#include <chrono>

#include "tests/host/control/control_fixture.h"
#include "tests/support/valgrind.h"

namespace host {
namespace {

constexpr std::chrono::seconds kAtOnce{3};

// No descriptor can be opened during its lifetime.
class NoDescriptors {
 public:
  NoDescriptors() {
    getrlimit(RLIMIT_NOFILE, &before_);
    rlimit none = before_;
    none.rlim_cur = 0;
    setrlimit(RLIMIT_NOFILE, &none);
  }
  ~NoDescriptors() { setrlimit(RLIMIT_NOFILE, &before_); }
  NoDescriptors(const NoDescriptors&) = delete;
  NoDescriptors& operator=(const NoDescriptors&) = delete;

 private:
  rlimit before_{};
};

class AcceptTest : public ControlFixture {
 protected:
  using ControlFixture::ControlFixture;

  void turnFor(std::chrono::milliseconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    do {
      turn();
    } while (std::chrono::steady_clock::now() < end);
  }

  void expectAnswerAtOnce() {
    const auto start = std::chrono::steady_clock::now();
    expectOthersAreAnswered();
    EXPECT_LT(std::chrono::steady_clock::now() - start, kAtOnce);
  }

  std::vector<Client> silentClients(std::size_t count) const {
    std::vector<Client> clients(count);
    for (Client& client : clients) client = connect();
    return clients;
  }

  std::size_t linesWith(const std::string& text) const {
    const std::string log = logged();
    std::size_t count = 0;
    for (auto at = log.find(text); at != std::string::npos; at = log.find(text, at + 1)) count++;
    return count;
  }
};

TEST_F(AcceptTest, ClientWaitsWhileThereAreNoDescriptors) {
  if (underValgrind()) {
    GTEST_SKIP() << "valgrind accepts the connection and closes it, instead of leaving it in the queue";
  }
  log_.record("test", C_LOG_INFO, "");  // a sanitizer needs descriptors when it first sees a class
  turnFor(std::chrono::milliseconds(0));
  const Client client = connect();
  client->request("GET", "/modules");
  {
    const NoDescriptors none;
    turnFor(std::chrono::milliseconds(2500));
  }
  EXPECT_EQ(linesWith("Too many open files"), 1u) << logged().substr(0, 1000);
  EXPECT_EQ(linesWith("control: " + path_ + ": cannot accept connections: Too many open files"), 1u);
  EXPECT_EQ(linesWith("accepts connections again"), 0u);
  EXPECT_EQ(answerTo(*client), R"(200 {"modules":[],"state":"idle"})");
  EXPECT_EQ(linesWith("control: " + path_ + ": accepts connections again"), 1u);
}

TEST_F(AcceptTest, ManySilentClientsKeepNobodyWaiting) {
  const auto silent = silentClients(500);
  expectAnswerAtOnce();
  expectAnswerAtOnce();
}

TEST_F(AcceptTest, ManyClientsThatLeaveKeepNobodyWaiting) {
  for (int i = 0; i < 1000; i++) connect();
  expectAnswerAtOnce();
}

TEST_F(AcceptTest, SilentClientIsNotCutOffWhileThereIsRoom) {
  const Client silent = connect();
  for (int i = 0; i < 100; i++) expectOthersAreAnswered();
  silent->request("GET", "/modules");
  EXPECT_EQ(answerTo(*silent), R"(200 {"modules":[],"state":"idle"})");
}

TEST_F(AcceptTest, ClientThatHasBeenIdleLongestGivesWay) {
  const auto silent = silentClients(32);
  turnFor(std::chrono::milliseconds(50));
  silent[0]->request("GET", "/modules");
  EXPECT_EQ(answerTo(*silent[0]), R"(200 {"modules":[],"state":"idle"})");
  turnFor(std::chrono::milliseconds(50));
  expectAnswerAtOnce();
  for (const Client& client : silent) client->move();
  const auto cut_off = [](const Client& client) { return client->isCutOff(); };
  EXPECT_EQ(std::count_if(silent.begin(), silent.end(), cut_off), 1);
  EXPECT_FALSE(silent[0]->isCutOff());
}

TEST_F(AcceptTest, RequestThatTheLoopHasNotReadYetIsAnswered) {
  const auto clients = silentClients(32);
  turnFor(std::chrono::milliseconds(50));
  const auto others = silentClients(32);
  for (const Client& client : clients) {
    client->request("GET", "/modules");
    client->write();
  }
  turnFor(std::chrono::milliseconds(50));
  for (const Client& client : clients) EXPECT_EQ(answerTo(*client), R"(200 {"modules":[],"state":"idle"})");
}

TEST_F(AcceptTest, StreamsAndUnreadAnswersAreNotCutOffForOthers) {
  config_.setValue("Device.Time.Server", std::string(3 << 20, 'x'), 0);
  std::vector<Client> followers(24);
  for (Client& follower : followers) follower = follow("/events");
  const Client reader = connect();
  reader->request("GET", "/leaf?name=Device.Time.Server");
  reader->write();
  turnFor(std::chrono::milliseconds(50));

  const auto silent = silentClients(100);
  expectAnswerAtOnce();
  events_.notify("link-up", "", 0);
  for (const Client& follower : followers) EXPECT_EQ(newsFor(*follower, 1).size(), 1u);
  EXPECT_GT(answerTo(*reader).size(), 3u << 20);
}

}  // namespace

}  // namespace host
