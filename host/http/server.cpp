// SPDX-License-Identifier: MIT
#include "host/http/server.h"

#include <event2/buffer.h>
#include <event2/http_struct.h>
#include <event2/keyvalq_struct.h>

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
  evbuffer* body = evhttp_request_get_output_buffer(request_);
  evbuffer_add(body, json.data(), json.size());
  evbuffer_add(body, "\n", 1);
  evhttp_send_reply(request_, status, nullptr, nullptr);
}

void HttpExchange::refuse(int status, int code, const std::string& error) {
  reply(status, lineOf({{"result", code}, {"error", error}}));
}

std::weak_ptr<Stream> HttpExchange::stream() {
  auto stream = streams_.open(request_);
  connections_.streamIn(connectionOf(request_));
  return stream;
}

HttpServer::HttpServer(EventBase& base, const std::string& path, Handler handler,
                       const Connections::Limits& limits, Connections::Log log)
    : handler_(std::move(handler)),
      socket_(path),
      streams_(base, limits.streams, limits.ping_every),
      server_(makeServer(base.get())),
      listener_(listen(base.get(), server_.get(), socket_.fd())),
      connections_(base, listener_, limits, std::move(log)) {
  evhttp_set_bevcb(server_.get(), onAccept, this);
  evhttp_set_gencb(server_.get(), onRequest, this);
}

bufferevent* HttpServer::onAccept(event_base* /*base*/, void* self) {
  return static_cast<HttpServer*>(self)->connections_.accept();
}

void HttpServer::onRequest(evhttp_request* request, void* self) {
  auto& server = *static_cast<HttpServer*>(self);
  bufferevent* connection = connectionOf(request);
  HttpExchange exchange(request, server.streams_, server.connections_);
  if (!peerMayControl(bufferevent_getfd(connection))) {
    exchange.refuse(403, C_RESULT_SYSTEM_CALL, "permission denied: only the same user and root may connect");
    return;
  }
  server.connections_.requestIn(connection);
  server.handler_(exchange);
}

}  // namespace host
