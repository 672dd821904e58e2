// SPDX-License-Identifier: MIT
#include "host/http/connections.h"

#include <event2/buffer.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <exception>
#include <utility>

#include "host/include/cpp2c_host.h"
#include "host/loop/event_base.h"
#include "include_c"
#include "util/error.h"

namespace host {
namespace {

using Clock = std::chrono::steady_clock;

// More than the longest request. Bytes after a request are read once it is answered.
constexpr std::size_t kMostUnread = 2 << 20;

// A new connection is not ended for another one before its request can arrive.
constexpr std::chrono::milliseconds kGrace{10};

// libevent passes only its own server to the callback for errors. A process has one control socket.
Connections* g_connections = nullptr;

// The server removes its callbacks from a connection that it has finished with.
bool isClosed(bufferevent* connection) {
  void* argument = nullptr;
  bufferevent_getcb(connection, nullptr, nullptr, nullptr, &argument);
  return argument == nullptr;
}

bool hasUnsentAnswer(bufferevent* connection) {
  return evbuffer_get_length(bufferevent_get_output(connection)) > 0;
}

// The loop may be too busy to have read the request.
bool hasUnreadRequest(bufferevent* connection) {
  int size = 0;
  return ioctl(bufferevent_getfd(connection), FIONREAD, &size) == 0 && size > 0;
}

EventPtr makeTimer(EventBase& base, event_callback_fn callback, void* argument) {
  EventPtr timer(evtimer_new(base.get(), callback, argument));
  if (timer == nullptr) throw util::Error(C_RESULT_SYSTEM_CALL, "cannot create a timer");
  return timer;
}

}  // namespace

Connections::Connections(EventBase& base, evconnlistener* listener, const Limits& limits, Log log)
    : base_(base),
      listener_(listener),
      limits_(limits),
      log_(std::move(log)),
      timer_(callEvery(base, limits.check_every, onTime, this)),
      resume_(makeTimer(base, onResume, this)) {
  g_connections = this;
  evconnlistener_set_error_cb(listener_, onAcceptError);
}

Connections::~Connections() {
  evconnlistener_set_error_cb(listener_, nullptr);
  g_connections = nullptr;
  for (const auto& [connection, entry] : entries_) bufferevent_decref(connection);
}

std::size_t Connections::count() const {
  return static_cast<std::size_t>(std::count_if(entries_.begin(), entries_.end(),
                                                [](const auto& entry) { return !isClosed(entry.first); }));
}

bufferevent* Connections::accept() noexcept {
  bufferevent* connection = bufferevent_socket_new(base_.get(), -1, BEV_OPT_CLOSE_ON_FREE);
  if (connection == nullptr) return nullptr;
  bufferevent_setwatermark(connection, EV_READ, 0, kMostUnread);
  try {
    add(connection);
    reportSuccess();
  } catch (const std::exception&) {  // no memory: served without limits
  }
  return connection;
}

void Connections::add(bufferevent* connection) {
  forgetClosed();  // first: the server has not set its callbacks on the new connection yet
  makeRoom();
  entries_.emplace(connection, Connection{Use::kRequests, Clock::now()});
  bufferevent_incref(connection);
  if (!hasRoom()) pause(kGrace);
}

void Connections::use(bufferevent* connection, Use use) {
  const auto entry = entries_.find(connection);
  if (entry != entries_.end()) entry->second = {use, Clock::now()};
}

// The client stays in the queue of the socket, which would report it again at once.
void Connections::onAcceptError(evconnlistener* /*listener*/, void* /*server*/) noexcept {
  const int error = errno;
  Connections& connections = *g_connections;
  connections.pause(connections.limits_.check_every);
  try {
    connections.reportError(error);
  } catch (const std::exception&) {  // no memory: reported by the next failure
  }
}

void Connections::reportError(int error) {
  if (failing_) return;
  log_(C_LOG_WARNING, std::string("cannot accept connections: ") + std::strerror(error));
  failing_ = true;
}

void Connections::reportSuccess() {
  if (!std::exchange(failing_, false)) return;
  log_(C_LOG_NOTICE, "accepts connections again");
}

void Connections::pause(std::chrono::milliseconds time) {
  const timeval wait = timevalOf(time);
  if (evtimer_add(resume_.get(), &wait) == 0) evconnlistener_disable(listener_);
}

void Connections::onResume(evutil_socket_t /*fd*/, short /*events*/, void* self) {
  auto& connections = *static_cast<Connections*>(self);
  connections.forgetClosed();
  if (connections.hasRoom()) {
    evconnlistener_enable(connections.listener_);
  } else {
    connections.pause(kGrace);
  }
}

void Connections::onTime(evutil_socket_t /*fd*/, short /*events*/, void* self) {
  auto& connections = *static_cast<Connections*>(self);
  connections.forgetClosed();
  connections.endOverdue();
}

bool Connections::hasRoom() {
  return entries_.size() < limits_.count || longestIdle() != entries_.end();
}

void Connections::makeRoom() {
  while (entries_.size() >= limits_.count) {
    const auto entry = longestIdle();
    if (entry == entries_.end()) return;
    end(entry);
  }
}

// Waits for a request, or for the rest of one.
Connections::Entries::iterator Connections::longestIdle() {
  auto longest = entries_.end();
  TimePoint earliest = Clock::now() - kGrace;
  for (auto entry = entries_.begin(); entry != entries_.end(); ++entry) {
    const auto& [connection, state] = *entry;
    if (state.since >= earliest || state.use != Use::kRequests) continue;
    if (hasUnsentAnswer(connection) || hasUnreadRequest(connection)) continue;
    longest = entry;
    earliest = state.since;
  }
  return longest;
}

// The server sees the end of the input and closes the connection.
Connections::Entries::iterator Connections::end(Entries::iterator entry) {
  shutdown(bufferevent_getfd(entry->first), SHUT_RDWR);
  bufferevent_decref(entry->first);
  return entries_.erase(entry);
}

void Connections::forgetClosed() {
  for (auto entry = entries_.begin(); entry != entries_.end();) {
    bufferevent* connection = entry->first;
    if (!isClosed(connection)) {
      ++entry;
      continue;
    }
    entry = entries_.erase(entry);
    bufferevent_decref(connection);
  }
}

void Connections::endOverdue() {
  const TimePoint now = Clock::now();
  for (auto entry = entries_.begin(); entry != entries_.end();) {
    const auto& state = entry->second;
    const bool overdue = state.use != Use::kStream && now - state.since > limits_.request_time;
    entry = overdue ? end(entry) : std::next(entry);
  }
}

}  // namespace host
