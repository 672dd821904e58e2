// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_CONNECTION_TRANSFER_H
#define CPP2C_CONTEXTCTL_CONNECTION_TRANSFER_H

#include <curl/curl.h>

#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "contextctl/connection/message.h"

namespace contextctl {

// One HTTP request. `on_bytes` receives the body of the answer piece by piece. Nothing is sent to a program
// of another user. Throws Failure if `socket` is empty.
class Transfer {
 public:
  using OnBytes = std::function<void(std::string_view bytes)>;

  Transfer(const std::string& socket, double seconds, const std::string& path, const Query& query,
           OnBytes on_bytes);
  Transfer(const Transfer&) = delete;
  Transfer& operator=(const Transfer&) = delete;

  void setRequest(const std::string& method, const std::string& body);
  void limitTotalTime();
  CURL* handle() const { return handle_.get(); }
  long status() const;
  void rethrow() const;                         // the exception that stopped the transfer, if any
  [[noreturn]] void fail(CURLcode code) const;  // the transfer failed
  [[noreturn]] void failTimeout() const;

 private:
  static size_t write(char* bytes, size_t one, size_t size, void* user);
  static size_t countHeader(char* bytes, size_t one, size_t size, void* user);
  static curl_socket_t open(void* user, curlsocktype purpose, curl_sockaddr* address);
  static int checkPeer(void* user, char* peer_address, char* address, int peer_port, int port);

  template <typename T>
  void set(CURLoption option, T value) {
    require(curl_easy_setopt(handle_.get(), option, value));
  }
  static void require(CURLcode code);  // throws Failure, for example if there is no memory for a text
  void addHeader(const char* header);

  std::string socket_;
  double seconds_;
  OnBytes on_bytes_;
  curl_socket_t fd_ = CURL_SOCKET_BAD;
  size_t headers_size_ = 0;
  std::exception_ptr thrown_;
  std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> handle_;
  std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> headers_;
};

}  // namespace contextctl

#endif
