// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_HTTP_CONNECTIONS_H
#define CPP2C_HOST_HTTP_CONNECTIONS_H

#include <event2/bufferevent.h>
#include <event2/listener.h>

#include <chrono>
#include <cstddef>
#include <map>

#include "host/loop/event_base.h"

namespace host {

// The open client connections, limited in number and in the time that each may take for a request. libevent's
// server reports neither the start nor the end of a connection, so this keeps a reference to each and checks
// all of them once a second.
class Connections {
 public:
  struct Limits {
    std::size_t count = 32;
    std::size_t streams = 24;  // fewer than `count`, so that requests always get through
    std::chrono::milliseconds request_time{10000};
    std::chrono::milliseconds check_every{1000};
    std::chrono::milliseconds ping_every{15000};  // on each stream
  };

  // Disables `listener` while the limit is reached. It must outlive this object.
  Connections(EventBase& base, evconnlistener* listener, const Limits& limits);
  ~Connections();
  Connections(const Connections&) = delete;
  Connections& operator=(const Connections&) = delete;

  std::size_t count() const;

  // Creates the buffer event through which the server talks to its next client.
  bufferevent* accept();

  // To be called when a request is complete: extends the time limit, or lifts it for a stream.
  void requestIn(bufferevent* connection);
  void streamIn(bufferevent* connection);

 private:
  using TimePoint = std::chrono::steady_clock::time_point;

  static void onTime(evutil_socket_t, short, void* self);
  void forgetClosed();
  void endOverdue();
  TimePoint deadline() const { return std::chrono::steady_clock::now() + limits_.request_time; }

  EventBase& base_;
  evconnlistener* const listener_;
  const Limits limits_;
  std::map<bufferevent*, TimePoint> deadlines_;
  EventPtr timer_;
};

}  // namespace host

#endif
