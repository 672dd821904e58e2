// SPDX-License-Identifier: MIT
#include "host/http/server.h"

#include <event2/buffer.h>
#include <event2/http_struct.h>
#include <event2/keyvalq_struct.h>

#include <exception>
#include <new>
#include <nlohmann/json.hpp>
#include <utility>

#include "host/json/document.h"
#include "include_c"
#include "util/error.h"

namespace host {
namespace {

constexpr ev_ssize_t kMostHeaders = 8192;
constexpr ev_ssize_t kMostBody = 1 << 20;
constexpr unsigned kMethods = EVHTTP_REQ_GET | EVHTTP_REQ_PUT | EVHTTP_REQ_POST | EVHTTP_REQ_DELETE;

[[noreturn]] void cannotServe() {
  throw util::Error(C_RESULT_SYSTEM_CALL, "cannot create the HTTP server of the control socket");
}

evhttp* makeServer(event_base* base) {
  evhttp* server = evhttp_new(base);
  if (server == nullptr) cannotServe();
  evhttp_set_allowed_methods(server, kMethods);
  evhttp_set_max_headers_size(server, kMostHeaders);
  evhttp_set_max_body_size(server, kMostBody);
  evhttp_set_default_content_type(server, "application/json");
  return server;
}

// The socket keeps ownership of its descriptor.
evconnlistener* listen(event_base* base, evhttp* server, int socket) {
  evconnlistener* listener = evconnlistener_new(base, nullptr, nullptr, LEV_OPT_CLOSE_ON_EXEC, 0, socket);
  if (listener == nullptr) cannotServe();
  if (evhttp_bind_listener(server, listener) == nullptr) {
    evconnlistener_free(listener);
    cannotServe();
  }
  return listener;
}

bufferevent* connectionOf(evhttp_request* request) {
  return evhttp_connection_get_bufferevent(evhttp_request_get_connection(request));
}

const char* nameOf(evhttp_cmd_type method) {
  switch (method) {
    case EVHTTP_REQ_PUT:
      return "PUT";
    case EVHTTP_REQ_POST:
      return "POST";
    case EVHTTP_REQ_DELETE:
      return "DELETE";
    default:
      return "GET";
  }
}

std::string orEmpty(const char* text) {
  return text != nullptr ? text : "";
}

std::map<std::string, std::string> queryIn(const evhttp_uri* uri) {
  std::map<std::string, std::string> query;
  const char* text = evhttp_uri_get_query(uri);
  evkeyvalq pairs{};
  if (text == nullptr) return query;
  if (evhttp_parse_query_str(text, &pairs) != 0) {
    throw util::Error(C_RESULT_PARAM, "malformed query; expected name=value&name=value");
  }
  for (const evkeyval* pair = pairs.tqh_first; pair != nullptr; pair = pair->next.tqe_next) {
    query[pair->key] = pair->value;
  }
  evhttp_clear_headers(&pairs);
  return query;
}

std::string bodyOf(evhttp_request* request) {
  evbuffer* buffer = evhttp_request_get_input_buffer(request);
  std::string body(evbuffer_get_length(buffer), '\0');
  evbuffer_copyout(buffer, body.data(), body.size());
  return body;
}

}  // namespace

HttpRequest HttpExchange::request() const {
  const evhttp_uri* uri = evhttp_request_get_evhttp_uri(request_);
  return {nameOf(evhttp_request_get_command(request_)), orEmpty(evhttp_uri_get_path(uri)), queryIn(uri),
          bodyOf(request_)};
}

void HttpExchange::reply(int status, const std::string& json) {
  has_begun_ = true;
  evbuffer* body = evhttp_request_get_output_buffer(request_);
  if (evbuffer_add(body, json.data(), json.size()) != 0 || evbuffer_add(body, "\n", 1) != 0) {
    throw std::bad_alloc();
  }
  evhttp_send_reply(request_, status, nullptr, nullptr);
}

void HttpExchange::replyInPieces(NextPiece next) {
  const Piece first = next();
  if (first.is_last) return reply(HTTP_OK, first.text);
  has_begun_ = true;
  replies_.long_replies.start(request_, first.text, std::move(next));
}

std::weak_ptr<Stream> HttpExchange::stream() {
  replies_.streams.requireRoom();
  has_begun_ = true;
  auto stream = replies_.streams.open(request_);
  replies_.connections.streamIn(connectionOf(request_));
  return stream;
}

// Without a JSON value of its own: there may be no memory for it.
void HttpExchange::refuse(int status, int code, const std::string& error) {
  if (has_begun_) return evhttp_connection_free(evhttp_request_get_connection(request_));
  reply(status, "{\"error\":" + lineOf(error) + ",\"result\":" + std::to_string(code) + '}');
}

HttpServer::HttpServer(EventBase& base, const std::string& path, Handler handler,
                       const Connections::Limits& limits, Connections::Log log)
    : handler_(std::move(handler)),
      socket_(path),
      streams_(base, limits.streams, limits.ping_every),
      long_replies_(connections_),
      server_(makeServer(base.get())),
      listener_(listen(base.get(), server_.get(), socket_.fd())),
      connections_(base, listener_, limits, std::move(log)) {
  evhttp_set_bevcb(server_.get(), onAccept, this);
  evhttp_set_gencb(server_.get(), onRequest, this);
}

bufferevent* HttpServer::onAccept(event_base* /*base*/, void* self) {
  return static_cast<HttpServer*>(self)->connections_.accept();
}

// No exception may reach libevent, which is written in C.
void HttpServer::onRequest(evhttp_request* request, void* self) noexcept {
  evhttp_connection* connection = evhttp_request_get_connection(request);
  try {
    static_cast<HttpServer*>(self)->serve(request);
  } catch (const std::exception&) {  // not even a refusal can be sent
    evhttp_connection_free(connection);
  }
}

void HttpServer::serve(evhttp_request* request) {
  bufferevent* connection = connectionOf(request);
  HttpExchange exchange(request, {connections_, long_replies_, streams_});
  if (!peerMayControl(bufferevent_getfd(connection))) {
    exchange.refuse(403, C_RESULT_SYSTEM_CALL, "permission denied: only the same user and root may connect");
    return;
  }
  connections_.requestIn(connection);
  handler_(exchange);
}

}  // namespace host
