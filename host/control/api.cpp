// SPDX-License-Identifier: MIT
#include "host/control/api.h"

#include <algorithm>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <utility>

#include "host/control/refusal.h"
#include "host/json/int32.h"
#include "include_c"
#include "util/text.h"

using nlohmann::json;

namespace {

constexpr int kDeepest = 16;

// Statuses that have no result code of their own.
struct Unroutable {
  int status;
  std::string error;
};

json parseBody(const std::string& text) {
  if (text.empty()) return json::object();
  try {
    json body = json::parse(text, [](int depth, json::parse_event_t, json&) {
      if (depth > kDeepest) throw Refusal(C_RESULT_PARAM, "the request's JSON is nested too deeply");
      return true;
    });
    if (!body.is_object()) throw Refusal(C_RESULT_PARAM, "the request's JSON is not an object");
    return body;
  } catch (const json::parse_error& error) {
    throw Refusal(C_RESULT_PARAM, "the request is not JSON: byte " + std::to_string(error.byte));
  } catch (const json::out_of_range&) {
    throw Refusal(C_RESULT_PARAM, "the request's JSON holds a number out of range");
  }
}

int statusOf(int result) {
  switch (result) {
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

std::string failure(int result, const std::string& error) {
  return lineOf({{"result", result}, {"error", error}});
}

}  // namespace

std::string lineOf(const json& value) {
  return value.dump(-1, ' ', false, json::error_handler_t::replace);
}

ApiRequest::ApiRequest(const HttpRequest& http)
    : http_(http), body_(std::make_unique<const json>(parseBody(http.body))) {}

ApiRequest::~ApiRequest() = default;

std::string ApiRequest::parameter(const char* name) const {
  auto found = http_.query.find(name);
  if (found == http_.query.end()) {
    throw Refusal(C_RESULT_PARAM, "the parameter " + util::quoted(name) + " is missing");
  }
  return found->second;
}

std::string ApiRequest::parameterOr(const char* name, const std::string& other) const {
  auto found = http_.query.find(name);
  return found != http_.query.end() ? found->second : other;
}

bool ApiRequest::flag(const char* name) const {
  const std::string text = parameterOr(name, "false");
  if (text == "true") return true;
  if (text == "false") return false;
  throw Refusal(C_RESULT_PARAM, "the parameter " + util::quoted(name) + " must be true or false");
}

void ApiRequest::expectOnly(std::initializer_list<const char*> names) const {
  for (const auto& [name, value] : body_->items()) {
    if (std::find(names.begin(), names.end(), name) == names.end()) {
      throw Refusal(C_RESULT_PARAM, "unknown key " + util::quoted(name));
    }
  }
}

const json& ApiRequest::member(const char* name) const {
  auto found = body_->find(name);
  if (found == body_->end()) throw Refusal(C_RESULT_PARAM, util::quoted(name) + " is missing");
  return *found;
}

std::string ApiRequest::text(const char* name) const {
  const json& value = member(name);
  if (!value.is_string()) throw Refusal(C_RESULT_PARAM, util::quoted(name) + " must be a text");
  return value.get<std::string>();
}

int ApiRequest::number(const char* name) const {
  const auto number = int32In(member(name));
  if (!number) throw Refusal(C_RESULT_PARAM, util::quoted(name) + " must be a 32-bit integer");
  return *number;
}

bool ApiRequest::flagOf(const char* name) const {
  if (body_->count(name) == 0) return false;
  const json& value = member(name);
  if (!value.is_boolean()) throw Refusal(C_RESULT_PARAM, util::quoted(name) + " must be true or false");
  return value.get<bool>();
}

void Api::answer(const char* method, const char* path, Answer answer) {
  handlers_[path][method] = [answer = std::move(answer)](const ApiRequest& request, HttpExchange& exchange) {
    exchange.reply(200, lineOf(answer(request)));
  };
}

void Api::follow(const char* path, Follow follow) {
  handlers_[path]["GET"] = [follow = std::move(follow)](const ApiRequest& request, HttpExchange& exchange) {
    follow(request, [&exchange] { return exchange.stream(); });
  };
}

const Api::Handler& Api::find(const HttpRequest& request) const {
  auto methods = handlers_.find(request.path);
  if (methods == handlers_.end()) throw Unroutable{404, "there is no " + util::quoted(request.path)};
  auto handler = methods->second.find(request.method);
  if (handler == methods->second.end()) {
    throw Unroutable{405, request.method + " is not for " + util::quoted(request.path)};
  }
  return handler->second;
}

void Api::handle(HttpExchange& exchange) const {
  try {
    const HttpRequest http = exchange.request();
    find(http)(ApiRequest(http), exchange);
  } catch (const Unroutable& unroutable) {
    exchange.reply(unroutable.status, failure(C_RESULT_NOT_FOUND, unroutable.error));
  } catch (const Refusal& refusal) {
    exchange.reply(statusOf(refusal.result()), failure(refusal.result(), refusal.what()));
  } catch (const std::exception& error) {  // must not pass through libevent, which is C
    exchange.reply(503, failure(C_RESULT_NO_MEMORY, error.what()));
  }
}
