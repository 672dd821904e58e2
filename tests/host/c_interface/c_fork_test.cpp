// SPDX-License-Identifier: MIT
// A service that forks: nothing that the child does may disturb its parent.
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "tests/host/c_interface/c_interface_fixture.h"
#include "tests/support/valgrind.h"

using namespace host;

namespace {

constexpr int kPatience = 1000;  // ticks

constexpr const char* kConfig = R"({
  "objects": [{"number": 4, "name": "A.", "leaves": {"X": {"type": "int"}}}]
})";

std::function<void()> g_on_tick;

int tick() {
  g_on_tick();
  return 0;
}

void takeByte(void* taken, short /*events*/, int fd) {
  char byte = 0;
  *static_cast<bool*>(taken) = read(fd, &byte, 1) == 1;
}

class CForkTest : public CInterfaceFixture {
 protected:
  CForkTest() {
    if (pipe2(ends_, O_CLOEXEC) != 0) ADD_FAILURE() << "no pipe";
    EXPECT_EQ(start(), C_RESULT_OK);
    c_loop_add_fd(ends_[0], C_LOOP_READ, takeByte, &taken_);
  }
  ~CForkTest() override {
    g_on_tick = nullptr;
    close(client_);
    close(ends_[0]);
    close(ends_[1]);
  }

  int start() {
    return initWith(kConfig, {"--control", folder_.file("socket"), "--state", folder_.file("state")});
  }

  static int inChild(const std::function<void()>& call) {
    const pid_t child = fork();
    if (child == 0) {
      call();
      _exit(0);
    }
    int status = -1;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return status;
  }

  // Runs the loop, forks in a callback, and lets the parent take a byte and answer a client afterwards.
  void runAndFork(const std::function<void()>& call) {
    int ticks = 0;
    g_on_tick = [&] {
      ticks++;
      if (ticks == 1) {
        EXPECT_EQ(inChild(call), 0);
        EXPECT_EQ(write(ends_[1], "x", 1), 1);
        connectClient();
      }
      takeAnswer();
      if ((taken_ && !answer_.empty()) || ticks == kPatience) raise(SIGTERM);
    };
    c_context_set_timer(1, 1, tick);
    EXPECT_EQ(c_loop_run(), C_RESULT_OK);
  }

  void connectClient() {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    folder_.file("socket").copy(address.sun_path, sizeof address.sun_path - 1);
    client_ = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    EXPECT_EQ(connect(client_, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    const std::string request = "GET /modules HTTP/1.0\r\n\r\n";
    EXPECT_EQ(send(client_, request.data(), request.size(), MSG_NOSIGNAL),
              static_cast<ssize_t>(request.size()));
  }

  void takeAnswer() {
    char part[64];
    const ssize_t size = recv(client_, part, sizeof part, MSG_DONTWAIT);
    if (size > 0) answer_.append(part, static_cast<std::size_t>(size));
  }

  void expectParentIsServed() const {
    EXPECT_TRUE(taken_) << "the descriptor's callback is not called";
    EXPECT_EQ(answer_.substr(0, sizeof "HTTP/1.0 200" - 1), "HTTP/1.0 200");
  }

  int ends_[2] = {-1, -1};

 private:
  bool taken_ = false;
  int client_ = -1;
  std::string answer_;
};

TEST_F(CForkTest, EndOfTheContextInAChildLeavesTheParentItsDescriptors) {
  runAndFork(c_context_deinit);
  expectParentIsServed();
}

TEST_F(CForkTest, UnwatchingInAChildLeavesTheParentItsWatch) {
  runAndFork([this] { c_loop_del_fd(ends_[0]); });
  expectParentIsServed();
}

TEST_F(CForkTest, WatchingInAChildLeavesTheParentItsWatch) {
  runAndFork([this] {
    if (c_loop_add_fd(ends_[0], C_LOOP_WRITE | C_LOOP_EDGE, takeByte, nullptr) != C_RESULT_OK) _exit(1);
  });
  expectParentIsServed();
}

TEST_F(CForkTest, SaveInAChildIsRefusedAndLeavesTheParentItsSaves) {
  const auto save = [](int value) {
    EXPECT_EQ(c_cfm_set_value("A.X", 0, "int", &value, sizeof value), C_RESULT_OK);
    return c_cfm_save_config();
  };
  EXPECT_EQ(save(1), C_RESULT_OK);
  EXPECT_EQ(inChild([&] {
              if (save(2) != C_RESULT_SYSTEM_CALL) _exit(1);
            }),
            0);
  EXPECT_EQ(records().back(),
            "error state: " + folder_.file("state") + ": cannot be saved by a forked process");
  EXPECT_EQ(save(3), C_RESULT_OK);
  c_context_deinit();
  EXPECT_EQ(start(), C_RESULT_OK);
  int saved = 0;
  EXPECT_EQ(c_cfm_get_value("A.X", "int", &saved, sizeof saved), C_RESULT_OK);
  EXPECT_EQ(saved, 3);
}

TEST_F(CForkTest, EndOfTheContextInAChildLeavesTheStateFile) {
  if (underValgrind())
    GTEST_SKIP() << "the child leaves its parent's services alone, which is reported as a leak";
  const int value = 5;
  EXPECT_EQ(c_cfm_set_value("A.X", 0, "int", &value, sizeof value), C_RESULT_OK);
  EXPECT_EQ(c_cfm_save_config(), C_RESULT_OK);
  EXPECT_EQ(inChild(c_context_deinit), 0);
  EXPECT_TRUE(std::filesystem::exists(folder_.file("state-wal")));
  const int later = 6;
  EXPECT_EQ(c_cfm_set_value("A.X", 0, "int", &later, sizeof later), C_RESULT_OK);
  EXPECT_EQ(c_cfm_save_config(), C_RESULT_OK);
  c_context_deinit();
  ASSERT_EQ(start(), C_RESULT_OK);
  int restored = 0;
  EXPECT_EQ(c_cfm_get_value("A.X", "int", &restored, sizeof restored), C_RESULT_OK);
  EXPECT_EQ(restored, later);
}

TEST_F(CForkTest, RecordsAreWrittenOnce) {
  if (underValgrind())
    GTEST_SKIP() << "the child leaves its parent's services alone, which is reported as a leak";
  c_log_record("netd", C_LOG_INFO, "before");
  EXPECT_EQ(inChild(c_context_deinit), 0);
  c_log_record("netd", C_LOG_INFO, "after");
  EXPECT_EQ(records(), (std::vector<std::string>{"info netd: before", "info netd: after"}));
}

TEST_F(CForkTest, ChildMayStartAContextOfItsOwn) {
  if (underValgrind())
    GTEST_SKIP() << "the child leaves its parent's services alone, which is reported as a leak";
  EXPECT_EQ(inChild([] {
              c_context_deinit();
              if (init({}) != C_RESULT_OK) _exit(1);
              c_context_deinit();
            }),
            0);
}

// A child that runs on in the background, while its parent ends.
TEST_F(CForkTest, ChildMayRunTheLoopWithItsOwnWatches) {
  EXPECT_EQ(inChild([this] {
              if (write(ends_[1], "x", 1) != 1) _exit(1);
              c_loop_add_fd(
                  ends_[0], C_LOOP_READ, [](void*, short, int) { raise(SIGTERM); }, nullptr);
              if (c_loop_run() != C_RESULT_OK) _exit(2);
            }),
            0);
}

}  // namespace
