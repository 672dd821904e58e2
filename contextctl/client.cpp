// SPDX-License-Identifier: MIT
#include "contextctl/client.h"

#include <curl/curl.h>
#include <string.h>

#include <exception>
#include <memory>

#include "contextctl/event_stream.h"
#include "contextctl/failure.h"
#include "contextctl/interrupt.h"
#include "contextctl/message.h"
#include "contextctl/printable.h"
#include "contextctl/seconds.h"

namespace {

// One request; `on_bytes` is given the body piece by piece.
class Transfer {
 public:
  using OnBytes = std::function<void(std::string_view bytes)>;

  Transfer(const std::string& socket, double seconds, const std::string& path, const Client::Query& query,
           OnBytes on_bytes);
  Transfer(const Transfer&) = delete;
  Transfer& operator=(const Transfer&) = delete;

  void setBody(const std::string& method, const std::string& body);
  void setTotalTime();
  CURL* handle() const { return handle_.get(); }
  long status() const;
  void rethrow() const;                         // what `on_bytes` threw
  [[noreturn]] void fail(CURLcode code) const;  // says why the transfer failed
  [[noreturn]] void failLate() const;           // says that it took too long

 private:
  static size_t write(char* bytes, size_t one, size_t size, void* user);

  template <typename T>
  void set(CURLoption option, T value) {
    curl_easy_setopt(handle_.get(), option, value);
  }

  std::string socket_;
  double seconds_;
  OnBytes on_bytes_;
  std::exception_ptr thrown_;
  std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> handle_;
  std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> headers_;
};

std::string queryText(CURL* handle, const Client::Query& query) {
  std::string text;
  for (const auto& [name, value] : query) {
    if (value.empty()) continue;
    const std::unique_ptr<char, decltype(&curl_free)> escaped(
        curl_easy_escape(handle, value.data(), static_cast<int>(value.size())), curl_free);
    text += (text.empty() ? '?' : '&') + name + '=' + escaped.get();
  }
  return text;
}

Transfer::Transfer(const std::string& socket, double seconds, const std::string& path,
                   const Client::Query& query, OnBytes on_bytes)
    : socket_(socket),
      seconds_(seconds),
      on_bytes_(std::move(on_bytes)),
      handle_(curl_easy_init(), curl_easy_cleanup),
      headers_(nullptr, curl_slist_free_all) {
  const std::string url = "http://context" + path + queryText(handle(), query);
  set(CURLOPT_URL, url.c_str());
  set(CURLOPT_UNIX_SOCKET_PATH, socket_.c_str());
  set(CURLOPT_PROXY, "");  // the environment may name one
  set(CURLOPT_NOSIGNAL, 1L);
  set(CURLOPT_WRITEFUNCTION, &Transfer::write);
  set(CURLOPT_WRITEDATA, this);
  set(CURLOPT_CONNECTTIMEOUT_MS, Deadline(seconds).millisecondsLeft() + 0L);
}

void Transfer::setBody(const std::string& method, const std::string& body) {
  set(CURLOPT_CUSTOMREQUEST, method.c_str());
  if (method == "GET" || method == "DELETE") return;
  headers_.reset(curl_slist_append(headers_.release(), "Content-Type: application/json"));
  headers_.reset(curl_slist_append(headers_.release(), "Expect:"));
  set(CURLOPT_HTTPHEADER, headers_.get());
  set(CURLOPT_POSTFIELDSIZE, static_cast<long>(body.size()));
  set(CURLOPT_COPYPOSTFIELDS, body.c_str());
}

void Transfer::setTotalTime() {
  set(CURLOPT_TIMEOUT_MS, Deadline(seconds_).millisecondsLeft() + 0L);
}

long Transfer::status() const {
  long status = 0;
  curl_easy_getinfo(handle(), CURLINFO_RESPONSE_CODE, &status);
  return status;
}

// No exception may pass through the C library; this one waits until that has returned.
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

void Transfer::rethrow() const {
  if (thrown_) std::rethrow_exception(thrown_);
}

void Transfer::fail(CURLcode code) const {
  if (code == CURLE_OPERATION_TIMEDOUT) failLate();
  long reason = 0;
  curl_easy_getinfo(handle(), CURLINFO_OS_ERRNO, &reason);
  if (code == CURLE_COULDNT_CONNECT)
    throw Failure(kExitNoAnswer, "no context at " + socket_ + ": " + strerror(static_cast<int>(reason)));
  throw Failure(kExitNoAnswer, "no answer from " + socket_ + ": " + curl_easy_strerror(code));
}

void Transfer::failLate() const {
  throw Failure(kExitNoAnswer, "no answer from " + socket_ + " within " + secondsText(seconds_));
}

bool isRefusal(long status) {
  return status == 400 || status == 404 || status == 409 || status == 413 || status == 503;
}

void requireSuccess(long status, const std::string& body) {
  if (status == 200) return;
  const std::string refusal = readRefusal(body).value_or("HTTP status " + std::to_string(status));
  throw Failure(isRefusal(status) ? kExitNo : kExitNoAnswer, printable(refusal));
}

// Runs one transfer beside the interrupt.
class Follower {
 public:
  explicit Follower(const Transfer& transfer)
      : multi_(curl_multi_init(), curl_multi_cleanup), transfer_(transfer) {
    curl_multi_add_handle(multi_.get(), transfer.handle());
  }
  ~Follower() { curl_multi_remove_handle(multi_.get(), transfer_.handle()); }
  Follower(const Follower&) = delete;
  Follower& operator=(const Follower&) = delete;

  bool isRunning();
  CURLcode result();
  bool waitOrInterrupted(const Interrupt& interrupt, int milliseconds);

 private:
  std::unique_ptr<CURLM, decltype(&curl_multi_cleanup)> multi_;
  const Transfer& transfer_;
};

bool Follower::isRunning() {
  int running = 0;
  curl_multi_perform(multi_.get(), &running);
  return running != 0;
}

CURLcode Follower::result() {
  int left = 0;
  const CURLMsg* message = curl_multi_info_read(multi_.get(), &left);
  return message == nullptr ? CURLE_OK : message->data.result;
}

bool Follower::waitOrInterrupted(const Interrupt& interrupt, int milliseconds) {
  curl_waitfd watch = {interrupt.fd(), CURL_WAIT_POLLIN, 0};
  curl_multi_poll(multi_.get(), &watch, 1, milliseconds, nullptr);
  return watch.revents != 0;
}

}  // namespace

std::string Client::request(const std::string& method, const std::string& path, const Query& query,
                            const std::string& body) const {
  std::string answer;
  Transfer transfer(socket_, seconds_, path, query, [&](std::string_view bytes) { answer += bytes; });
  transfer.setBody(method, body);
  transfer.setTotalTime();
  const CURLcode code = curl_easy_perform(transfer.handle());
  if (code != CURLE_OK) transfer.fail(code);
  requireSuccess(transfer.status(), answer);
  return answer;
}

void Client::follow(const std::string& path, const Query& query, const Interrupt& interrupt,
                    const OnItem& on_item) const {
  bool enough = false;
  EventStream stream([&](const std::string& item) { enough = enough || !on_item(item); });
  std::string refusal;
  const Transfer* current = nullptr;
  Transfer transfer(socket_, seconds_, path, query, [&](std::string_view bytes) {
    if (current->status() == 200)
      stream.feed(bytes);
    else
      refusal += bytes;
  });
  current = &transfer;

  Follower follower(transfer);
  const Deadline deadline(seconds_);
  while (follower.isRunning() && !enough) {
    const bool begun = transfer.status() != 0;
    if (!begun && deadline.millisecondsLeft() == 0) transfer.failLate();
    if (follower.waitOrInterrupted(interrupt, begun ? 1000 : deadline.millisecondsLeft())) return;
  }
  transfer.rethrow();
  if (enough) return;
  const CURLcode code = follower.result();
  if (transfer.status() == 0) transfer.fail(code);
  requireSuccess(transfer.status(), refusal);
  throw Failure(kExitNoAnswer, "the context at " + socket_ + " has gone away");
}
