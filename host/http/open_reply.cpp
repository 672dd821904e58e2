// SPDX-License-Identifier: MIT
#include "host/http/open_reply.h"

#include <event2/buffer.h>
#include <event2/http_struct.h>

#include <memory>
#include <new>
#include <utility>

namespace host {
namespace {

struct FreeBuffer {
  void operator()(evbuffer* buffer) const { evbuffer_free(buffer); }
};

bool hasChunks(const evhttp_request* request) {
  return request->major > 1 || (request->major == 1 && request->minor >= 1);
}

// Without chunks, only the end of the connection shows the end of the reply.
void closeAfter(evhttp_request* request) {
  evhttp_remove_header(evhttp_request_get_input_headers(request), "Connection");
}

}  // namespace

OpenReply::OpenReply(evhttp_request* request) : request_(request) {
  if (!hasChunks(request)) closeAfter(request);
  evhttp_send_reply_start(request, HTTP_OK, nullptr);
}

OpenReply::~OpenReply() {
  // A request that has lost its connection is freed by answering it. Otherwise the connection is being freed,
  // and its requests with it.
  if (request_ != nullptr && evhttp_request_get_connection(request_) == nullptr) end();
}

bufferevent* OpenReply::connection() const {
  evhttp_connection* connection = evhttp_request_get_connection(request_);
  return connection != nullptr ? evhttp_connection_get_bufferevent(connection) : nullptr;
}

void OpenReply::write(const std::string& text, OnSent on_sent, void* argument) {
  const std::unique_ptr<evbuffer, FreeBuffer> chunk(evbuffer_new());
  if (chunk == nullptr || evbuffer_add(chunk.get(), text.data(), text.size()) != 0) throw std::bad_alloc();
  evhttp_send_reply_chunk_with_cb(request_, chunk.get(), on_sent, argument);
}

void OpenReply::end() {
  evhttp_send_reply_end(std::exchange(request_, nullptr));
}

}  // namespace host
