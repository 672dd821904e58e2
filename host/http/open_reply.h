// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_HTTP_OPEN_REPLY_H
#define CPP2C_HOST_HTTP_OPEN_REPLY_H

#include <event2/bufferevent.h>
#include <event2/http.h>

#include <string>

namespace host {

// A reply with status 200 that is sent part by part. It may lose its connection at any time.
class OpenReply {
 public:
  using OnSent = void (*)(evhttp_connection* connection, void* argument);

  // Sends the headers of the reply.
  explicit OpenReply(evhttp_request* request);
  ~OpenReply();
  OpenReply(const OpenReply&) = delete;
  OpenReply& operator=(const OpenReply&) = delete;

  bufferevent* connection() const;  // null if it is lost

  // The text must not be empty. Calls `on_sent` when the system has taken all of it. Throws std::bad_alloc.
  void write(const std::string& text, OnSent on_sent = nullptr, void* argument = nullptr);

  void end();  // the last call: completes the reply

 private:
  evhttp_request* request_;  // null at the end
};

}  // namespace host

#endif
