// SPDX-License-Identifier: MIT
// The file of the control socket, and who may talk to it.
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "host/http/unix_socket.h"
#include "host/process/processes.h"
#include "tests/host/control/control_fixture.h"
#include "tests/host/support/error_text.h"
#include "tests/host/support/recording_log.h"

namespace host {
namespace {

class UnixSocketTest : public testing::Test {
 protected:
  std::string refusal() const {
    return errorOf([this] { UnixSocket socket(path_); });
  }
  std::string expected(const std::string& why) const {
    return "-1021 " + path_ + ": cannot create the control socket: " + why;
  }

  // Leaves what a killed program leaves.
  void leaveDeadSocket() const {
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path_.copy(address.sun_path, sizeof address.sun_path - 1);
    ASSERT_EQ(bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(listen(fd, 1), 0);
    close(fd);
  }

  TemporaryFolder folder_;
  std::string path_ = folder_.file("control");
};

TEST_F(UnixSocketTest, FileIsForItsOwnerAloneWhateverTheMask) {
  const mode_t mask = umask(0);
  const UnixSocket socket(path_);
  umask(mask);
  struct stat status {};
  ASSERT_EQ(lstat(path_.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode, static_cast<mode_t>(S_IFSOCK | 0600));
}

TEST_F(UnixSocketTest, FileGoesWithTheSocket) {
  UnixSocket(path_).fd();
  EXPECT_FALSE(std::filesystem::exists(path_));
}

TEST_F(UnixSocketTest, PlaceOfADeadSocketIsTaken) {
  leaveDeadSocket();
  const UnixSocket socket(path_);
  EXPECT_NO_THROW(ControlClient client(path_));
}

TEST_F(UnixSocketTest, LiveSocketIsLeftAlone) {
  const UnixSocket socket(path_);
  EXPECT_EQ(refusal(), expected("another program is listening on it"));
  ControlClient client(path_);
}

TEST_F(UnixSocketTest, FileOfAnotherKindIsLeftAlone) {
  folder_.write("control", "letters");
  EXPECT_EQ(refusal(), expected("a file of another kind has this name"));
  EXPECT_EQ(folder_.read("control"), "letters");
}

TEST_F(UnixSocketTest, LinkIsNotFollowed) {
  std::filesystem::create_symlink(folder_.file("elsewhere"), path_);
  EXPECT_EQ(refusal(), expected("a file of another kind has this name"));
}

TEST_F(UnixSocketTest, NameHasALimit) {
  const std::string reason = "the path must be 1 to 107 bytes long";
  path_ = std::string(108, 'x');
  EXPECT_EQ(refusal(), expected(reason));
  path_ = "";
  EXPECT_EQ(refusal(), expected(reason));
  path_ = folder_.file("");
  path_.resize(107, 'x');
  EXPECT_EQ(refusal(), "");
}

TEST_F(UnixSocketTest, FolderThatThereIsNotIsRefused) {
  path_ = folder_.file("none/control");
  EXPECT_EQ(refusal(), expected("No such file or directory"));
}

TEST_F(UnixSocketTest, RefusalLeavesNoDescriptor) {
  const std::size_t before = openDescriptors();
  path_ = folder_.file("none/control");
  refusal();
  folder_.write("control", "");
  path_ = folder_.file("control");
  refusal();
  EXPECT_EQ(openDescriptors(), before);
}

TEST_F(UnixSocketTest, FileThatAnotherHasMadeMeanwhileStays) {
  auto older = std::make_unique<UnixSocket>(path_);
  std::filesystem::remove(path_);
  const UnixSocket newer(path_);
  older.reset();
  EXPECT_TRUE(std::filesystem::exists(path_));
}

TEST(PeerTest, SameUserAndRootMayControl) {
  EXPECT_TRUE(mayControl(1000, 1000));
  EXPECT_TRUE(mayControl(0, 1000));
  EXPECT_TRUE(mayControl(0, 0));
  EXPECT_FALSE(mayControl(1001, 1000));
  EXPECT_FALSE(mayControl(1000, 0));
}

TEST(PeerTest, WhoIsNotKnownMayNot) {
  EXPECT_FALSE(peerMayControl(-1));
}

class ControlSocketTest : public ControlFixture {
 protected:
  // Connects as another user, which the kernel keeps for the time of the connection.
  Client connectAs(uid_t user) {
    std::filesystem::permissions(folder_.path(), std::filesystem::perms(0711));
    std::filesystem::permissions(path_, std::filesystem::perms(0666));
    EXPECT_EQ(seteuid(user), 0);
    Client client = connect();
    EXPECT_EQ(seteuid(0), 0);
    return client;
  }
};

TEST_F(ControlSocketTest, AnotherUserIsRefused) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can be another user";
  const Client client = connectAs(65534);
  for (const char* target : {"/tree", "/events", "/leaf?name=Device.Time.Key&reveal=true"}) {
    client->request("GET", target);
    EXPECT_EQ(answerTo(*client), errorText(403, C_RESULT_SYSTEM_CALL,
                                           "permission denied: only the same user and root may connect"));
  }
  client->request("PUT", "/attribute", R"({"object":"1","value":8})");
  EXPECT_EQ(answerTo(*client).substr(0, 3), "403");
  expectOthersAreAnswered();
}

sighandler_t brokenPipeHandler() {
  struct sigaction action {};
  sigaction(SIGPIPE, nullptr, &action);
  return action.sa_handler;
}

TEST_F(ControlSocketTest, BrokenPipeEndsTheProgramAgainAfterwards) {
  EXPECT_NE(brokenPipeHandler(), SIG_DFL);
  control_.reset();
  EXPECT_EQ(brokenPipeHandler(), SIG_DFL);
}

TEST_F(ControlSocketTest, BrokenPipeEndsTheCommandsThatAreRun) {
  RecordingLog log;
  EXPECT_EQ(Processes(log).run("kill -PIPE $$"), 128 + SIGPIPE);
}

// A program that has a mind of its own about broken pipes before the socket is made.
struct IgnoredPipe {
  IgnoredPipe() { std::signal(SIGPIPE, SIG_IGN); }
  ~IgnoredPipe() { std::signal(SIGPIPE, SIG_DFL); }
};
class ControlBrokenPipeTest : private IgnoredPipe, public ControlFixture {};

TEST_F(ControlBrokenPipeTest, HandlerOfTheProgramStays) {
  EXPECT_EQ(brokenPipeHandler(), SIG_IGN);
  control_.reset();
  EXPECT_EQ(brokenPipeHandler(), SIG_IGN);
}

}  // namespace

}  // namespace host
