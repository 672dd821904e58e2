// SPDX-License-Identifier: MIT
#include "host/control/router.h"

#include <utility>

#include "include_c"
#include "util/error.h"
#include "util/text.h"

namespace host {
namespace {

int statusOf(int code) {
  switch (code) {
    case C_RESULT_PARAM:
      return 400;
    case C_RESULT_NOT_FOUND:
      return 404;
    case C_RESULT_REDUNDANT:
      return 409;
    default:
      return 503;
  }
}

}  // namespace

ControlRequest::ControlRequest(const HttpRequest& http)
    : http_(http), body_(http.body.empty() ? "{}" : http.body, "request body") {
  body().requireObject();
}

std::string ControlRequest::parameter(const char* name) const {
  const auto found = http_.query.find(name);
  if (found == http_.query.end()) {
    throw util::Error(C_RESULT_PARAM, "the parameter " + util::quoted(name) + " is missing");
  }
  return found->second;
}

std::string ControlRequest::parameterOr(const char* name, const std::string& missing) const {
  const auto found = http_.query.find(name);
  return found != http_.query.end() ? found->second : missing;
}

bool ControlRequest::flag(const char* name) const {
  const std::string text = parameterOr(name, "false");
  if (text == "true") return true;
  if (text == "false") return false;
  throw util::Error(C_RESULT_PARAM, "the parameter " + util::quoted(name) + " must be true or false");
}

void Router::answer(const char* method, const char* path, Answer answer) {
  handlers_[path][method] = [answer = std::move(answer)](const ControlRequest& request,
                                                         HttpExchange& exchange) {
    exchange.reply(200, answer(request));
  };
}

void Router::list(const char* path, List list) {
  handlers_[path]["GET"] = [list = std::move(list)](const ControlRequest& request, HttpExchange& exchange) {
    exchange.replyInPieces(list(request));
  };
}

void Router::follow(const char* path, Follow follow) {
  handlers_[path]["GET"] = [follow = std::move(follow)](const ControlRequest& request,
                                                        HttpExchange& exchange) {
    follow(request, [&exchange] { return exchange.stream(); });
  };
}

void Router::handle(HttpExchange& exchange) const {
  try {
    dispatch(exchange.request(), exchange);
  } catch (const util::Error& error) {
    exchange.refuse(statusOf(error.code()), error.code(), error.what());
  } catch (const std::exception& error) {  // no memory
    exchange.refuse(503, C_RESULT_NO_MEMORY, error.what());
  }
}

void Router::dispatch(const HttpRequest& request, HttpExchange& exchange) const {
  const auto methods = handlers_.find(request.path);
  if (methods == handlers_.end()) {
    return exchange.refuse(404, C_RESULT_NOT_FOUND, "unknown path " + util::quoted(request.path));
  }
  const auto handler = methods->second.find(request.method);
  if (handler == methods->second.end()) {
    const std::string error = util::quoted(request.path) + " does not support " + request.method;
    return exchange.refuse(405, C_RESULT_NOT_FOUND, error);
  }
  handler->second(ControlRequest(request), exchange);
}

}  // namespace host
