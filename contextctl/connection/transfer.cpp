// SPDX-License-Identifier: MIT
#include "contextctl/connection/transfer.h"

#include <string.h>
#include <sys/socket.h>

#include "contextctl/connection/unix_socket.h"
#include "contextctl/output/durations.h"
#include "contextctl/system/deadline.h"
#include "contextctl/system/failure.h"

namespace contextctl {
namespace {

[[noreturn]] void failWithoutMemory() {
  throw Failure(kExitNoAnswer, "out of memory");
}

std::string queryText(CURL* handle, const Query& query) {
  std::string text;
  for (const auto& [name, value] : query) {
    if (value.empty()) continue;
    const std::unique_ptr<char, decltype(&curl_free)> escaped(
        curl_easy_escape(handle, value.data(), static_cast<int>(value.size())), curl_free);
    if (escaped == nullptr) failWithoutMemory();
    text += (text.empty() ? '?' : '&') + name + '=' + escaped.get();
  }
  return text;
}

}  // namespace

Transfer::Transfer(const std::string& socket, double seconds, const std::string& path, const Query& query,
                   OnBytes on_bytes)
    : socket_(socket),
      seconds_(seconds),
      on_bytes_(std::move(on_bytes)),
      handle_(curl_easy_init(), curl_easy_cleanup),
      headers_(nullptr, curl_slist_free_all) {
  if (handle_ == nullptr) failWithoutMemory();
  requireSocketName(socket_);
  const std::string url = "http://context" + path + queryText(handle(), query);
  set(CURLOPT_URL, url.c_str());
  set(CURLOPT_UNIX_SOCKET_PATH, socket_.c_str());
  set(CURLOPT_PROXY, "");     // ignore the proxies of the environment
  set(CURLOPT_NOSIGNAL, 1L);  // SIGPIPE keeps its effect: it ends the program whose output nobody reads
  set(CURLOPT_OPENSOCKETFUNCTION, &Transfer::open);
  set(CURLOPT_OPENSOCKETDATA, this);
  set(CURLOPT_PREREQFUNCTION, &Transfer::checkPeer);
  set(CURLOPT_PREREQDATA, this);
  set(CURLOPT_WRITEFUNCTION, &Transfer::write);
  set(CURLOPT_WRITEDATA, this);
  set(CURLOPT_HEADERFUNCTION, &Transfer::countHeader);
  set(CURLOPT_HEADERDATA, this);
  set(CURLOPT_CONNECTTIMEOUT_MS, long{Deadline(seconds).millisecondsLeft()});
}

void Transfer::setRequest(const std::string& method, const std::string& body) {
  set(CURLOPT_CUSTOMREQUEST, method.c_str());
  if (body.empty()) return;
  addHeader("Content-Type: application/json");
  addHeader("Expect:");
  set(CURLOPT_HTTPHEADER, headers_.get());
  set(CURLOPT_POSTFIELDSIZE, static_cast<long>(body.size()));
  set(CURLOPT_COPYPOSTFIELDS, body.c_str());
}

void Transfer::require(CURLcode code) {
  if (code == CURLE_OUT_OF_MEMORY) failWithoutMemory();
  if (code != CURLE_OK) throw Failure(kExitNoAnswer, std::string("libcurl: ") + curl_easy_strerror(code));
}

void Transfer::addHeader(const char* header) {
  curl_slist* longer = curl_slist_append(headers_.get(), header);
  if (longer == nullptr) failWithoutMemory();
  static_cast<void>(headers_.release());  // the list is now a part of the longer one
  headers_.reset(longer);
}

void Transfer::limitTotalTime() {
  set(CURLOPT_TIMEOUT_MS, long{Deadline(seconds_).millisecondsLeft()});
}

long Transfer::status() const {
  long status = 0;
  curl_easy_getinfo(handle(), CURLINFO_RESPONSE_CODE, &status);
  return status;
}

// Only to know the descriptor: libcurl connects it.
curl_socket_t Transfer::open(void* user, curlsocktype, curl_sockaddr* address) {
  auto& self = *static_cast<Transfer*>(user);
  self.fd_ = socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
  return self.fd_;
}

// An exception must not pass through the C library: these functions keep it until the library has returned.
int Transfer::checkPeer(void* user, char*, char*, int, int) {
  auto& self = *static_cast<Transfer*>(user);
  try {
    requireTrustedPeer(self.fd_, self.socket_);
    return CURL_PREREQFUNC_OK;
  } catch (...) {
    self.thrown_ = std::current_exception();
    return CURL_PREREQFUNC_ABORT;
  }
}

size_t Transfer::write(char* bytes, size_t one, size_t size, void* user) {
  auto& self = *static_cast<Transfer*>(user);
  try {
    self.on_bytes_({bytes, one * size});
    return one * size;
  } catch (...) {
    self.thrown_ = std::current_exception();
    return 0;
  }
}

// The time limit of a stream ends with its status line, which precedes the headers.
size_t Transfer::countHeader(char*, size_t one, size_t size, void* user) {
  constexpr size_t kLargestHeaders = 64 << 10;
  auto& self = *static_cast<Transfer*>(user);
  self.headers_size_ += one * size;
  if (self.headers_size_ <= kLargestHeaders) return one * size;
  self.thrown_ = std::make_exception_ptr(
      Failure(kExitNoAnswer, "invalid answer from the context: its headers are larger than 64 KiB"));
  return 0;
}

void Transfer::rethrow() const {
  if (thrown_) std::rethrow_exception(thrown_);
}

void Transfer::fail(CURLcode code) const {
  rethrow();
  if (code == CURLE_OPERATION_TIMEDOUT) failTimeout();
  long reason = 0;
  curl_easy_getinfo(handle(), CURLINFO_OS_ERRNO, &reason);
  if (code == CURLE_COULDNT_CONNECT)
    throw Failure(kExitNoAnswer, "no context at " + socket_ + ": " + strerror(static_cast<int>(reason)));
  throw Failure(kExitNoAnswer, "no answer from " + socket_ + ": " + curl_easy_strerror(code));
}

void Transfer::failTimeout() const {
  throw Failure(kExitNoAnswer, "no answer from " + socket_ + " within " + secondsText(seconds_));
}

}  // namespace contextctl
