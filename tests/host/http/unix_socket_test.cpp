// SPDX-License-Identifier: MIT
#include "host/http/unix_socket.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/host/support/error_text.h"
#include "tests/host/support/open_descriptors.h"
#include "tests/host/support/without_standard_input.h"
#include "tests/support/temporary_folder.h"

namespace host {
namespace {

// A socket that is bound or connected without the class under test. It does not block.
class PlainSocket {
 public:
  explicit PlainSocket(const std::string& path) {
    address_.sun_family = AF_UNIX;
    path.copy(address_.sun_path, sizeof address_.sun_path - 1);
  }
  ~PlainSocket() { close(fd_); }
  PlainSocket(const PlainSocket&) = delete;
  PlainSocket& operator=(const PlainSocket&) = delete;

  void listen(int backlog) {
    EXPECT_EQ(bind(fd_, address(), sizeof address_), 0);
    EXPECT_EQ(::listen(fd_, backlog), 0);
  }

  bool connect() { return ::connect(fd_, address(), sizeof address_) == 0; }

 private:
  const sockaddr* address() const { return reinterpret_cast<const sockaddr*>(&address_); }

  sockaddr_un address_{};
  const int fd_ = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
};

class UnixSocketTest : public testing::Test {
 protected:
  std::string refusal() const {
    return errorOf([this] { UnixSocket socket(path_); });
  }
  std::string expected(const std::string& why) const {
    return "-1021 " + path_ + ": cannot create the control socket: " + why;
  }

  // Leaves the file that a killed program leaves.
  void leaveDeadSocket() const { PlainSocket(path_).listen(1); }

  bool canConnect() const { return PlainSocket(path_).connect(); }

  // Connects clients until the backlog takes no more.
  std::vector<std::unique_ptr<PlainSocket>> fillBacklog() const {
    std::vector<std::unique_ptr<PlainSocket>> clients;
    do {
      clients.push_back(std::make_unique<PlainSocket>(path_));
    } while (clients.back()->connect());
    return clients;
  }

  TemporaryFolder folder_;
  std::string path_ = folder_.file("control");
};

TEST_F(UnixSocketTest, SocketIsServedWithoutStandardInput) {
  const WithoutStandardInput without;
  const UnixSocket socket(path_);
  EXPECT_TRUE(canConnect());
}

TEST_F(UnixSocketTest, OnlyTheOwnerHasAccessWhateverTheUmask) {
  const mode_t mask = umask(0);
  const UnixSocket socket(path_);
  umask(mask);
  struct stat status {};
  ASSERT_EQ(lstat(path_.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode, static_cast<mode_t>(S_IFSOCK | 0600));
}

TEST_F(UnixSocketTest, FileIsRemovedWithTheSocket) {
  {
    const UnixSocket socket(path_);
    EXPECT_TRUE(std::filesystem::exists(path_));
  }
  EXPECT_FALSE(std::filesystem::exists(path_));
}

TEST_F(UnixSocketTest, ClientsCanConnect) {
  const UnixSocket socket(path_);
  EXPECT_TRUE(canConnect());
}

TEST_F(UnixSocketTest, DeadSocketIsReplaced) {
  leaveDeadSocket();
  EXPECT_FALSE(canConnect());
  const UnixSocket socket(path_);
  EXPECT_TRUE(canConnect());
}

TEST_F(UnixSocketTest, LiveSocketIsLeftAlone) {
  const UnixSocket socket(path_);
  EXPECT_EQ(refusal(), expected("another program is listening on it"));
  EXPECT_TRUE(canConnect());
}

TEST_F(UnixSocketTest, LiveSocketWithAFullBacklogIsLeftAlone) {
  PlainSocket busy(path_);
  busy.listen(0);
  const auto clients = fillBacklog();
  EXPECT_EQ(refusal(), expected("another program is listening on it"));
  EXPECT_TRUE(std::filesystem::exists(path_));
}

TEST_F(UnixSocketTest, FileOfAnotherKindIsLeftAlone) {
  folder_.write("control", "letters");
  EXPECT_EQ(refusal(), expected("a file of another kind has this name"));
  EXPECT_EQ(folder_.read("control"), "letters");
}

TEST_F(UnixSocketTest, SymbolicLinkIsNotFollowed) {
  std::filesystem::create_symlink(folder_.file("elsewhere"), path_);
  EXPECT_EQ(refusal(), expected("a file of another kind has this name"));
}

TEST_F(UnixSocketTest, LongestPathIsAccepted) {
  path_ = folder_.file("");
  path_.resize(107, 'x');
  EXPECT_EQ(refusal(), "");
}

TEST_F(UnixSocketTest, LongerPathIsRefused) {
  path_ = std::string(108, 'x');
  EXPECT_EQ(refusal(), expected("the path must be 1 to 107 bytes long"));
}

TEST_F(UnixSocketTest, EmptyPathIsRefused) {
  path_ = "";
  EXPECT_EQ(refusal(), expected("the path must be 1 to 107 bytes long"));
}

TEST_F(UnixSocketTest, MissingFolderIsRefused) {
  path_ = folder_.file("none/control");
  EXPECT_EQ(refusal(), expected("No such file or directory"));
}

TEST_F(UnixSocketTest, SocketThatCannotBeBoundIsClosed) {
  const std::size_t before = openDescriptors();
  path_ = folder_.file("none/control");
  EXPECT_NE(refusal(), "");
  EXPECT_EQ(openDescriptors(), before);
}

TEST_F(UnixSocketTest, ProbeOfAnExistingSocketIsClosed) {
  const UnixSocket socket(path_);
  const std::size_t before = openDescriptors();
  EXPECT_NE(refusal(), "");
  EXPECT_EQ(openDescriptors(), before);
}

TEST_F(UnixSocketTest, FileThatHasReplacedItsOwnStays) {
  auto older = std::make_unique<UnixSocket>(path_);
  std::filesystem::remove(path_);
  const UnixSocket newer(path_);
  older.reset();
  EXPECT_TRUE(std::filesystem::exists(path_));
}

TEST(PeerTest, SameUserMayControl) {
  EXPECT_TRUE(mayControl(1000, 1000));
}

TEST(PeerTest, RootMayControl) {
  EXPECT_TRUE(mayControl(0, 1000));
  EXPECT_TRUE(mayControl(0, 0));
}

TEST(PeerTest, OtherUserMayNotControl) {
  EXPECT_FALSE(mayControl(1001, 1000));
  EXPECT_FALSE(mayControl(1000, 0));
}

TEST(PeerTest, UnknownPeerMayNotControl) {
  EXPECT_FALSE(peerMayControl(-1));
}

}  // namespace

}  // namespace host
