// SPDX-License-Identifier: MIT
#include "contextctl/connection/connection.h"

#include <unistd.h>

#include <cstdlib>

#include "contextctl/connection/event_stream.h"
#include "contextctl/connection/transfer.h"
#include "contextctl/system/deadline.h"
#include "contextctl/system/failure.h"
#include "contextctl/system/interrupt.h"
#include "util/text.h"

namespace contextctl {
namespace {

std::string environmentVariable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

bool isRefusal(long status) {
  return status == 400 || status == 404 || status == 409 || status == 413 || status == 503;
}

void append(std::string& answer, std::string_view bytes) {
  constexpr size_t kLargestAnswer = 64 << 20;
  if (bytes.size() > kLargestAnswer - answer.size())
    throw Failure(kExitNoAnswer, "invalid answer from the context: it is larger than 64 MiB");
  answer += bytes;
}

void requireSuccess(long status, const std::string& body) {
  if (status == 200) return;
  const std::string refusal = readRefusal(body).value_or("HTTP status " + std::to_string(status));
  throw Failure(isRefusal(status) ? kExitNo : kExitNoAnswer, util::printable(refusal));
}

// Runs one transfer while watching for the interrupt.
class Follower {
 public:
  explicit Follower(const Transfer& transfer)
      : multi_(curl_multi_init(), curl_multi_cleanup), transfer_(transfer) {
    if (multi_ == nullptr || curl_multi_add_handle(multi_.get(), transfer.handle()) != CURLM_OK) {
      throw Failure(kExitNoAnswer, "out of memory");
    }
  }
  ~Follower() { curl_multi_remove_handle(multi_.get(), transfer_.handle()); }
  Follower(const Follower&) = delete;
  Follower& operator=(const Follower&) = delete;

  // Returns false if the interrupt has ended it; otherwise it is complete or `enough` is set. Fails if the
  // answer does not begin before the deadline.
  bool run(const Interrupt& interrupt, const Deadline& deadline, const bool& enough);
  CURLcode result();

 private:
  bool isRunning();
  bool waitOrInterrupted(const Interrupt& interrupt, int milliseconds);

  std::unique_ptr<CURLM, decltype(&curl_multi_cleanup)> multi_;
  const Transfer& transfer_;
};

bool Follower::run(const Interrupt& interrupt, const Deadline& deadline, const bool& enough) {
  while (isRunning() && !enough) {
    const bool begun = transfer_.status() != 0;
    if (!begun && deadline.millisecondsLeft() == 0) transfer_.failTimeout();
    if (waitOrInterrupted(interrupt, begun ? 1000 : deadline.millisecondsLeft())) return false;
  }
  return true;
}

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

Answer Connection::get(const std::string& path, const Query& query) const {
  return readAnswer(getText(path, query));
}

Answer Connection::put(const std::string& path, const Members& members) const {
  return readAnswer(request("PUT", path, {}, writeObject(members)));
}

Answer Connection::post(const std::string& path, const Members& members) const {
  return readAnswer(request("POST", path, {}, writeObject(members)));
}

Answer Connection::remove(const std::string& path, const Query& query) const {
  return readAnswer(request("DELETE", path, query, ""));
}

std::string Connection::getText(const std::string& path, const Query& query) const {
  return request("GET", path, query, "");
}

std::string Connection::request(const std::string& method, const std::string& path, const Query& query,
                                const std::string& body) const {
  std::string answer;
  Transfer transfer(socket_, seconds_, path, query, [&](std::string_view bytes) { append(answer, bytes); });
  transfer.setRequest(method, body);
  transfer.limitTotalTime();
  const CURLcode code = curl_easy_perform(transfer.handle());
  if (code != CURLE_OK) transfer.fail(code);
  requireSuccess(transfer.status(), answer);
  return answer;
}

void Connection::follow(const std::string& path, const Query& query, const Interrupt& interrupt,
                        const OnItem& on_item) const {
  bool enough = false;
  EventStream stream([&](const std::string& item) { enough = enough || !on_item(readAnswer(item)); });
  std::string refusal;
  const Transfer* current = nullptr;
  Transfer transfer(socket_, seconds_, path, query, [&](std::string_view bytes) {
    if (current->status() == 200) {
      stream.feed(bytes);
    } else {
      append(refusal, bytes);
    }
  });
  current = &transfer;

  Follower follower(transfer);
  if (!follower.run(interrupt, Deadline(seconds_), enough)) return;
  transfer.rethrow();
  if (enough) return;
  const CURLcode code = follower.result();
  if (transfer.status() == 0) transfer.fail(code);
  requireSuccess(transfer.status(), refusal);
  throw Failure(kExitNoAnswer, "the context at " + socket_ + " closed the connection");
}

std::string defaultSocket() {
  std::string named = environmentVariable("CPP2C_CONTROL");
  const std::string folder = environmentVariable("XDG_RUNTIME_DIR");
  if (!named.empty()) return named;
  if (!folder.empty()) return folder + "/cpp2c.sock";
  return geteuid() == 0 ? "/run/cpp2c.sock" : "";
}

}  // namespace contextctl
