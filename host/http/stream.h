// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_HTTP_STREAM_H
#define CPP2C_HOST_HTTP_STREAM_H

#include <event2/http.h>

#include <chrono>
#include <cstddef>
#include <map>
#include <memory>
#include <string>

#include "host/http/open_reply.h"
#include "host/loop/event_base.h"

namespace host {

// The answer to one request as server-sent events, until the client closes the connection. A client that does
// not read is disconnected when too many bytes wait for it.
class Stream {
 public:
  explicit Stream(evhttp_request* request);

  void send(const std::string& text);  // one event
  void ping();                         // a comment, which keeps the connection alive

 private:
  void write(const std::string& text);

  OpenReply reply_;
};

// All open streams. Each ends with its connection, at the latest with the server.
class Streams {
 public:
  Streams(EventBase& base, std::size_t most, std::chrono::milliseconds ping_every);

  void requireRoom() const;  // throws util::Error if the limit is reached

  // Opens a stream, which may end at any time.
  std::weak_ptr<Stream> open(evhttp_request* request);

 private:
  static void onClosed(evhttp_connection* connection, void* self);
  static void onTime(evutil_socket_t, short, void* self);

  const std::size_t most_;
  std::map<evhttp_connection*, std::shared_ptr<Stream>> streams_;
  EventPtr timer_;
};

}  // namespace host

#endif
