// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_HTTP_CONNECTIONS_H
#define CPP2C_HOST_HTTP_CONNECTIONS_H

#include <event2/bufferevent.h>
#include <event2/listener.h>

#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <string>

#include "host/loop/event_base.h"

namespace host {

// The open client connections, limited in number and in the time that each may take for a request. At the
// limit, the connection that has been idle longest gives way to a new one. libevent's server reports neither
// the start nor the end of a connection, so this keeps a reference to each.
class Connections {
 public:
  struct Limits {
    std::size_t count = 32;
    std::size_t streams = 24;  // fewer than `count`, so that requests always get through
    std::chrono::milliseconds request_time{10000};
    std::chrono::milliseconds check_every{1000};
    std::chrono::milliseconds ping_every{15000};  // on each stream
  };

  // Writes a line with a c_log_level.
  using Log = std::function<void(int level, const std::string& text)>;

  // Pauses `listener` while no connection can be accepted. It must outlive this object.
  Connections(EventBase& base, evconnlistener* listener, const Limits& limits, Log log);
  ~Connections();
  Connections(const Connections&) = delete;
  Connections& operator=(const Connections&) = delete;

  std::size_t count() const;

  // Creates the buffer event through which the server talks to its next client. Null: without memory.
  bufferevent* accept() noexcept;

  // To be called when a request is complete or a piece of its reply is sent: the time limit starts again, or
  // is lifted for a stream.
  void requestIn(bufferevent* connection) { use(connection, Use::kRequests); }
  void longReplyIn(bufferevent* connection) { use(connection, Use::kLongReply); }
  void streamIn(bufferevent* connection) { use(connection, Use::kStream); }

 private:
  using TimePoint = std::chrono::steady_clock::time_point;
  enum class Use { kRequests, kLongReply, kStream };
  struct Connection {
    Use use;
    TimePoint since;  // start of the time limit
  };
  using Entries = std::map<bufferevent*, Connection>;

  static void onAcceptError(evconnlistener* listener, void* server) noexcept;
  static void onResume(evutil_socket_t, short, void* self);
  static void onTime(evutil_socket_t, short, void* self);

  void add(bufferevent* connection);
  void use(bufferevent* connection, Use use);
  void reportError(int error);
  void reportSuccess();
  void pause(std::chrono::milliseconds time);
  bool hasRoom();
  void makeRoom();
  Entries::iterator longestIdle();
  Entries::iterator end(Entries::iterator entry);
  void forgetClosed();
  void endOverdue();

  EventBase& base_;
  evconnlistener* const listener_;
  const Limits limits_;
  const Log log_;
  Entries entries_;
  bool failing_ = false;  // since the last attempt to accept a connection
  EventPtr timer_;
  EventPtr resume_;
};

}  // namespace host

#endif
