// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_CONTROL_STREAM_H
#define CPP2C_HOST_CONTROL_STREAM_H

#include <event2/http.h>

#include <chrono>
#include <cstddef>
#include <map>
#include <memory>
#include <string>

#include "host/loop/event_base.h"

// The answer to one request, which goes on: server-sent events, until the client is gone. A client that does
// not read is cut off when too much is waiting for it.
class Stream {
 public:
  explicit Stream(evhttp_request* request);
  ~Stream();
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;

  void send(const std::string& text);  // one event
  void ping();                         // shows that the stream is alive

 private:
  void write(const std::string& text);

  evhttp_request* const request_;
};

// All open streams. They end with their clients, at the latest with the server.
class Streams {
 public:
  Streams(EventBase& base, std::size_t most, std::chrono::milliseconds ping_every);

  // Begins one. It may end any time. Throws a Refusal if there are as many as there may be.
  std::weak_ptr<Stream> open(evhttp_request* request);

 private:
  static void onClosed(evhttp_connection* connection, void* self);
  static void onTime(evutil_socket_t, short, void* self);

  const std::size_t most_;
  std::map<evhttp_connection*, std::shared_ptr<Stream>> streams_;
  EventPtr timer_;
};

#endif
