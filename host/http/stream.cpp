// SPDX-License-Identifier: MIT
#include "host/http/stream.h"

#include <event2/buffer.h>
#include <event2/bufferevent.h>
#include <event2/http_struct.h>
#include <event2/keyvalq_struct.h>
#include <sys/socket.h>

#include <memory>

#include "host/loop/event_base.h"
#include "include_c"
#include "util/error.h"

namespace host {
namespace {

constexpr std::size_t kMostWaiting = 1 << 20;

struct FreeBuffer {
  void operator()(evbuffer* buffer) const { evbuffer_free(buffer); }
};

}  // namespace

Stream::Stream(evhttp_request* request) : request_(request) {
  evkeyvalq* headers = evhttp_request_get_output_headers(request_);
  evhttp_add_header(headers, "Content-Type", "text/event-stream");
  evhttp_add_header(headers, "Cache-Control", "no-store");
  evhttp_send_reply_start(request_, HTTP_OK, nullptr);
  ping();
}

Stream::~Stream() {
  // A request that has lost its connection is freed by answering it. Otherwise the connection is being freed,
  // and its requests with it.
  if (evhttp_request_get_connection(request_) == nullptr) evhttp_send_reply_end(request_);
}

void Stream::send(const std::string& text) {
  write("data: " + text + "\n\n");
}

void Stream::ping() {
  write(": ping\n\n");
}

void Stream::write(const std::string& text) {
  evhttp_connection* connection = evhttp_request_get_connection(request_);
  if (connection == nullptr) return;
  bufferevent* channel = evhttp_connection_get_bufferevent(connection);
  if (evbuffer_get_length(bufferevent_get_output(channel)) > kMostWaiting) {
    shutdown(bufferevent_getfd(channel), SHUT_RDWR);
    return;
  }
  const std::unique_ptr<evbuffer, FreeBuffer> chunk(evbuffer_new());
  if (chunk == nullptr || evbuffer_add(chunk.get(), text.data(), text.size()) != 0) return;
  evhttp_send_reply_chunk(request_, chunk.get());
}

Streams::Streams(EventBase& base, std::size_t most, std::chrono::milliseconds ping_every)
    : most_(most), timer_(callEvery(base, ping_every, onTime, this)) {}

std::weak_ptr<Stream> Streams::open(evhttp_request* request) {
  if (streams_.size() >= most_)
    throw util::Error(C_RESULT_SYSTEM_CALL, "too many followers; the limit is " + std::to_string(most_));
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
