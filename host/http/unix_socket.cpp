// SPDX-License-Identifier: MIT
#include "host/http/unix_socket.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "include_c"
#include "util/error.h"

namespace host {
namespace {

[[noreturn]] void fail(const std::string& path, const std::string& why) {
  throw util::Error(C_RESULT_SYSTEM_CALL, path + ": cannot create the control socket: " + why);
}

sockaddr_un addressOf(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.empty() || path.size() >= sizeof address.sun_path) {
    fail(path, "the path must be 1 to " + std::to_string(sizeof address.sun_path - 1) + " bytes long");
  }
  path.copy(address.sun_path, path.size());
  return address;
}

const sockaddr* generic(const sockaddr_un& address) {
  return reinterpret_cast<const sockaddr*>(&address);
}

int makeSocket() {
  return socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
}

bool hasListener(const sockaddr_un& address) {
  const int probe = makeSocket();
  if (probe < 0) return true;  // unknown, so the file must stay
  const bool refused = connect(probe, generic(address), sizeof address) != 0 && errno == ECONNREFUSED;
  close(probe);
  return !refused;
}

void removeDeadSocket(const std::string& path, const sockaddr_un& address) {
  struct stat status {};
  if (lstat(path.c_str(), &status) != 0) return;
  if (!S_ISSOCK(status.st_mode)) fail(path, "a file of another kind has this name");
  if (hasListener(address)) fail(path, "another program is listening on it");
  unlink(path.c_str());
}

std::pair<dev_t, ino_t> fileAt(const std::string& path) {
  struct stat status {};
  lstat(path.c_str(), &status);
  return {status.st_dev, status.st_ino};
}

// Sets the mode between bind() and listen(), before any client can connect.
bool listenAt(int fd, const std::string& path, const sockaddr_un& address) {
  if (bind(fd, generic(address), sizeof address) != 0) return false;
  if (chmod(path.c_str(), S_IRUSR | S_IWUSR) == 0 && listen(fd, SOMAXCONN) == 0) return true;
  const int error = errno;
  unlink(path.c_str());
  errno = error;
  return false;
}

}  // namespace

UnixSocket::UnixSocket(std::string path) : path_(std::move(path)) {
  const sockaddr_un address = addressOf(path_);
  removeDeadSocket(path_, address);
  fd_ = makeSocket();
  if (fd_ >= 0 && listenAt(fd_, path_, address)) {
    file_ = fileAt(path_);
    return;
  }
  const std::string why = std::strerror(errno);
  if (fd_ >= 0) close(fd_);
  fail(path_, why);
}

UnixSocket::~UnixSocket() {
  if (fileAt(path_) == file_) unlink(path_.c_str());
  close(fd_);
}

bool mayControl(uid_t user, uid_t owner) {
  return user == owner || user == 0;
}

bool peerMayControl(int socket) {
  ucred peer{};
  socklen_t size = sizeof peer;
  return getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && mayControl(peer.uid, geteuid());
}

}  // namespace host
