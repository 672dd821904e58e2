// SPDX-License-Identifier: MIT
#include "host/http/connections.h"

#include <sys/socket.h>

#include <algorithm>

#include "host/loop/event_base.h"

namespace host {
namespace {

// More than the longest request. Bytes after a request are read once it is answered.
constexpr std::size_t kMostUnread = 2 << 20;

// The server removes its callbacks from a connection that it has finished with.
bool isClosed(bufferevent* connection) {
  void* argument = nullptr;
  bufferevent_getcb(connection, nullptr, nullptr, nullptr, &argument);
  return argument == nullptr;
}

}  // namespace

Connections::Connections(EventBase& base, evconnlistener* listener, const Limits& limits)
    : base_(base),
      listener_(listener),
      limits_(limits),
      timer_(callEvery(base, limits.check_every, onTime, this)) {}

Connections::~Connections() {
  for (const auto& [connection, deadline] : deadlines_) bufferevent_decref(connection);
}

std::size_t Connections::count() const {
  return static_cast<std::size_t>(std::count_if(deadlines_.begin(), deadlines_.end(),
                                                [](const auto& entry) { return !isClosed(entry.first); }));
}

bufferevent* Connections::accept() {
  bufferevent* connection = bufferevent_socket_new(base_.get(), -1, BEV_OPT_CLOSE_ON_FREE);
  if (connection == nullptr) return nullptr;
  bufferevent_incref(connection);
  bufferevent_setwatermark(connection, EV_READ, 0, kMostUnread);
  forgetClosed();  // first: the server has not set its callbacks on the new connection yet
  deadlines_.emplace(connection, deadline());
  if (deadlines_.size() >= limits_.count) evconnlistener_disable(listener_);
  return connection;
}

void Connections::requestIn(bufferevent* connection) {
  deadlines_[connection] = deadline();
}

void Connections::streamIn(bufferevent* connection) {
  deadlines_[connection] = TimePoint::max();
}

void Connections::onTime(evutil_socket_t /*fd*/, short /*events*/, void* self) {
  auto& connections = *static_cast<Connections*>(self);
  connections.forgetClosed();
  connections.endOverdue();
  if (connections.deadlines_.size() < connections.limits_.count) {
    evconnlistener_enable(connections.listener_);
  }
}

void Connections::forgetClosed() {
  for (auto entry = deadlines_.begin(); entry != deadlines_.end();) {
    bufferevent* connection = entry->first;
    if (!isClosed(connection)) {
      ++entry;
      continue;
    }
    entry = deadlines_.erase(entry);
    bufferevent_decref(connection);
  }
}

// The server sees the end of the input and closes the connection.
void Connections::endOverdue() {
  const TimePoint now = std::chrono::steady_clock::now();
  for (const auto& [connection, deadline] : deadlines_) {
    if (deadline < now) shutdown(bufferevent_getfd(connection), SHUT_RDWR);
  }
}

}  // namespace host
