// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_CONTROL_CONNECTIONS_H
#define CPP2C_HOST_CONTROL_CONNECTIONS_H

#include <event2/bufferevent.h>
#include <event2/listener.h>

#include <chrono>
#include <cstddef>
#include <map>

#include "host/loop/event_base.h"

// The clients that are connected: how many there may be, and how long each may take for a request. libevent's
// server tells of neither a connection's beginning nor its end, so each is held on to, and looked at once a
// second.
class Connections {
 public:
  struct Limits {
    std::size_t count = 32;
    std::size_t streams = 24;  // of them, so that requests always get through
    std::chrono::milliseconds request_time{10000};
    std::chrono::milliseconds look_every{1000};
    std::chrono::milliseconds ping_every{15000};  // on each stream
  };

  // Stops and resumes `listener`, which outlives this object.
  Connections(EventBase& base, evconnlistener* listener, const Limits& limits);
  ~Connections();
  Connections(const Connections&) = delete;
  Connections& operator=(const Connections&) = delete;

  std::size_t count() const;

  // Makes what the server talks to its next client through.
  bufferevent* accept();

  // A request is complete: there is time for its answer and the next one. A stream may go on for ever.
  void requestIn(bufferevent* connection);
  void streamIn(bufferevent* connection);

 private:
  using TimePoint = std::chrono::steady_clock::time_point;

  static void onTime(evutil_socket_t, short, void* self);
  void forgetTheClosed();
  void endTheOverdue();
  TimePoint deadline() const { return std::chrono::steady_clock::now() + limits_.request_time; }

  EventBase& base_;
  evconnlistener* const listener_;
  const Limits limits_;
  std::map<bufferevent*, TimePoint> deadlines_;
  EventPtr timer_;
};

#endif
