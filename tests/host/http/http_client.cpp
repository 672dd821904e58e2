// SPDX-License-Identifier: MIT
#include "tests/host/http/http_client.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>

#include <gtest/gtest.h>

namespace host {
namespace {

constexpr char kEndOfHead[] = "\r\n\r\n";
constexpr auto kNone = std::string::npos;

// The value of a header; "" if there is none.
std::string headerOf(const std::string& head, const std::string& name) {
  const auto start = head.find("\r\n" + name + ": ");
  if (start == kNone) return "";
  const auto value = start + name.size() + 4;
  return head.substr(value, head.find("\r\n", value) - value);
}

bool hasChunks(const std::string& head) {
  return headerOf(head, "Transfer-Encoding") == "chunked";
}

// The end of the chunks that begin here; kNone if they are not complete.
std::string::size_type endOfChunks(const std::string& text, std::string::size_type at) {
  for (std::size_t size = 1; size > 0;) {
    const auto data = text.find("\r\n", at);
    if (data == kNone) return kNone;
    size = std::strtoul(text.c_str() + at, nullptr, 16);
    at = data + 2 + size + 2;
    if (at > text.size()) return kNone;
  }
  return at;
}

std::string joinChunks(const std::string& chunks) {
  std::string text;
  for (std::string::size_type at = 0; at < chunks.size();) {
    const std::size_t size = std::strtoul(chunks.c_str() + at, nullptr, 16);
    const auto data = chunks.find("\r\n", at);
    if (data == kNone || data + 2 + size > chunks.size()) break;
    text += chunks.substr(data + 2, size);
    at = data + 2 + size + 2;
  }
  return text;
}

}  // namespace

HttpClient::HttpClient(const std::string& path)
    : fd_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  EXPECT_EQ(connect(fd_, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0) << path;
}

void HttpClient::request(const std::string& method, const std::string& target, const std::string& body) {
  const std::string length = body.empty() ? "" : "Content-Length: " + std::to_string(body.size()) + "\r\n";
  send(method + ' ' + target + " HTTP/1.1\r\nHost: service\r\n" + length + "\r\n" + body);
}

void HttpClient::move() {
  if (fd_ < 0) return;
  write();
  read();
}

void HttpClient::write() {
  while (!unsent_.empty()) {
    const ssize_t size = ::send(fd_, unsent_.data(), unsent_.size(), MSG_NOSIGNAL);
    if (size < 0) break;
    unsent_.erase(0, static_cast<std::size_t>(size));
  }
}

void HttpClient::read() {
  char bytes[65536];
  ssize_t size = 0;
  while ((size = recv(fd_, bytes, sizeof bytes, 0)) > 0)
    received_.append(bytes, static_cast<std::size_t>(size));
  cut_off_ = size == 0 || errno != EAGAIN;
}

void HttpClient::leave() {
  if (fd_ >= 0) close(fd_);
  fd_ = -1;
}

std::string::size_type HttpClient::endOfAnswer() const {
  const auto head = received_.find(kEndOfHead);
  if (head == kNone) return kNone;
  const std::string headers = received_.substr(0, head + 2);
  if (hasChunks(headers)) return endOfChunks(received_, head + 4);
  const auto size = std::strtoul(headerOf(headers, "Content-Length").c_str(), nullptr, 10);
  const auto end = head + 4 + size;
  return end <= received_.size() ? end : kNone;
}

std::string HttpClient::answer() const {
  const auto end = endOfAnswer();
  if (end == kNone) return "";
  const auto body = received_.find(kEndOfHead) + 4;
  const std::string raw = received_.substr(body, end - body);
  std::string text = received_.substr(sizeof "HTTP/1.1", 3) + ' ';
  text += hasChunks(received_.substr(0, body - 2)) ? joinChunks(raw) : raw;
  while (text.back() == '\n') text.pop_back();
  return text;
}

std::string HttpClient::takeAnswer() {
  const std::string taken = answer();
  if (!taken.empty()) received_.erase(0, endOfAnswer());
  return taken;
}

// The events and comments of a stream, which blank lines separate.
std::vector<std::string> HttpClient::blocks() const {
  const auto head = received_.find(kEndOfHead);
  std::vector<std::string> blocks;
  if (head == kNone) return blocks;
  const std::string body = received_.substr(head + 4);
  const bool chunked = headerOf(received_.substr(0, head + 2), "Transfer-Encoding") == "chunked";
  const std::string text = chunked ? joinChunks(body) : body;
  for (std::string::size_type at = 0, end = 0; (end = text.find("\n\n", at)) != kNone; at = end + 2) {
    blocks.push_back(text.substr(at, end - at));
  }
  return blocks;
}

std::vector<std::string> HttpClient::items() const {
  static constexpr char kData[] = "data: ";
  std::vector<std::string> items;
  for (const std::string& block : blocks()) {
    if (block.rfind(kData, 0) == 0) items.push_back(block.substr(sizeof kData - 1));
  }
  return items;
}

std::size_t HttpClient::pings() const {
  const std::vector<std::string> all = blocks();
  return static_cast<std::size_t>(std::count(all.begin(), all.end(), ": ping"));
}

}  // namespace host
