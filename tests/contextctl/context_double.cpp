// SPDX-License-Identifier: MIT
#include "tests/contextctl/context_double.h"

#include <signal.h>
#include <string.h>
#include <sys/un.h>

#include <event2/buffer.h>
#include <event2/listener.h>

#include <gtest/gtest.h>

namespace contextctl {
namespace {

using Buffer = std::unique_ptr<evbuffer, decltype(&evbuffer_free)>;

const char* methodOf(evhttp_request* request) {
  switch (evhttp_request_get_command(request)) {
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

std::string bodyOf(evhttp_request* request) {
  evbuffer* buffer = evhttp_request_get_input_buffer(request);
  std::string body(evbuffer_get_length(buffer), '\0');
  evbuffer_copyout(buffer, body.data(), body.size());
  return body;
}

Buffer bufferOf(const std::string& text) {
  Buffer buffer(evbuffer_new(), evbuffer_free);
  evbuffer_add(buffer.get(), text.data(), text.size());
  return buffer;
}

evconnlistener* listenAt(event_base* base, const std::string& socket) {
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  socket.copy(address.sun_path, sizeof address.sun_path - 1);
  return evconnlistener_new_bind(base, nullptr, nullptr, LEV_OPT_CLOSE_ON_FREE | LEV_OPT_CLOSE_ON_EXEC, -1,
                                 reinterpret_cast<sockaddr*>(&address), sizeof address);
}

}  // namespace

ContextDouble::ContextDouble(const std::string& socket)
    : base_(event_base_new(), event_base_free), http_(evhttp_new(base_.get()), evhttp_free) {
  evconnlistener* listener = listenAt(base_.get(), socket);
  if (listener == nullptr) {
    ADD_FAILURE() << "no listener at " << socket;
    return;
  }
  evhttp_bind_listener(http_.get(), listener);
  evhttp_set_allowed_methods(http_.get(),
                             EVHTTP_REQ_GET | EVHTTP_REQ_PUT | EVHTTP_REQ_POST | EVHTTP_REQ_DELETE);
  evhttp_set_gencb(http_.get(), onRequest, this);
  signal(SIGPIPE, [](int) {});  // a client may close before its answer
}

ContextDouble::~ContextDouble() {
  for (evhttp_request* request : unfinished_) evhttp_send_reply_end(request);
}

void ContextDouble::answer(const std::string& request, const std::string& body, int status) {
  replies_[request] = {Manner::kAnswer, status, {body}};
}

void ContextDouble::onAnswered(const std::string& request, std::function<void()> action) {
  actions_[request] = std::move(action);
}

void ContextDouble::stream(const std::string& request, const std::vector<std::string>& pieces) {
  replies_[request] = {Manner::kStream, 200, pieces};
}

void ContextDouble::streamAndClose(const std::string& request, const std::vector<std::string>& pieces) {
  replies_[request] = {Manner::kStreamAndClose, 200, pieces};
}

void ContextDouble::keepSilent(const std::string& request) {
  replies_[request] = {Manner::kSilent, 200, {}};
}

void ContextDouble::onRequest(evhttp_request* request, void* user) {
  auto& self = *static_cast<ContextDouble*>(user);
  const std::string line = std::string(methodOf(request)) + ' ' + evhttp_request_get_uri(request);
  const std::string body = bodyOf(request);
  self.requests_.push_back(body.empty() ? line : line + ' ' + body);
  const auto found = self.replies_.find(line);
  if (found != self.replies_.end()) {
    self.reply(request, found->second);
    const auto action = self.actions_.find(line);
    if (action != self.actions_.end()) action->second();
    return;
  }
  ADD_FAILURE() << "unexpected request: " << line;
  self.reply(request, {Manner::kAnswer, 500, {"unexpected"}});  // without an answer, the client would wait
}

void ContextDouble::reply(evhttp_request* request, const Reply& reply) {
  if (reply.manner == Manner::kSilent || reply.manner == Manner::kStream) unfinished_.push_back(request);
  if (reply.manner == Manner::kSilent) return;
  evkeyvalq* headers = evhttp_request_get_output_headers(request);
  if (reply.manner == Manner::kAnswer) {
    evhttp_add_header(headers, "Content-Type", "application/json");
    evhttp_send_reply(request, reply.status, nullptr, bufferOf(reply.pieces[0]).get());
    return;
  }
  evhttp_add_header(headers, "Content-Type", "text/event-stream");
  evhttp_send_reply_start(request, reply.status, nullptr);
  for (const std::string& piece : reply.pieces) evhttp_send_reply_chunk(request, bufferOf(piece).get());
  if (reply.manner == Manner::kStreamAndClose) evhttp_send_reply_end(request);
}

}  // namespace contextctl
