// SPDX-License-Identifier: MIT
#include "host/http/stream.h"

#include <event2/buffer.h>
#include <event2/bufferevent.h>
#include <event2/http_struct.h>
#include <event2/keyvalq_struct.h>
#include <sys/socket.h>

#include <memory>
#include <new>

#include "host/loop/event_base.h"
#include "include_c"
#include "util/error.h"

namespace host {
namespace {

constexpr std::size_t kMostWaiting = 1 << 20;

evhttp_request* withHeaders(evhttp_request* request) {
  evkeyvalq* headers = evhttp_request_get_output_headers(request);
  evhttp_add_header(headers, "Content-Type", "text/event-stream");
  evhttp_add_header(headers, "Cache-Control", "no-store");
  return request;
}

// The server sees the end of the input and closes the connection.
void disconnect(bufferevent* connection) {
  shutdown(bufferevent_getfd(connection), SHUT_RDWR);
}

}  // namespace

Stream::Stream(evhttp_request* request) : reply_(withHeaders(request)) {
  ping();
}

void Stream::send(const std::string& text) {
  write("data: " + text + "\n\n");
}

void Stream::ping() {
  write(": ping\n\n");
}

void Stream::write(const std::string& text) {
  bufferevent* connection = reply_.connection();
  if (connection == nullptr) return;
  if (evbuffer_get_length(bufferevent_get_output(connection)) > kMostWaiting) return disconnect(connection);
  try {
    reply_.write(text);
  } catch (const std::bad_alloc&) {  // the client sees the end of the stream, not a gap in it
    disconnect(connection);
  }
}

Streams::Streams(EventBase& base, std::size_t most, std::chrono::milliseconds ping_every)
    : most_(most), timer_(callEvery(base, ping_every, onTime, this)) {}

void Streams::requireRoom() const {
  if (streams_.size() < most_) return;
  throw util::Error(C_RESULT_SYSTEM_CALL, "too many followers; the limit is " + std::to_string(most_));
}

std::weak_ptr<Stream> Streams::open(evhttp_request* request) {
  evhttp_connection* connection = evhttp_request_get_connection(request);
  evhttp_connection_set_closecb(connection, onClosed, this);
  auto stream = std::make_shared<Stream>(request);
  streams_[connection] = stream;
  return stream;
}

void Streams::onClosed(evhttp_connection* connection, void* self) {
  static_cast<Streams*>(self)->streams_.erase(connection);
}

void Streams::onTime(evutil_socket_t /*fd*/, short /*events*/, void* self) {
  for (const auto& [connection, stream] : static_cast<Streams*>(self)->streams_) stream->ping();
}

}  // namespace host
