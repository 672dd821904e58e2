// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_CONTROL_ROUTER_H
#define CPP2C_HOST_CONTROL_ROUTER_H

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "host/control/list_text.h"
#include "host/http/server.h"
#include "host/json/document.h"

namespace host {

// One request: the parameters of its query, and its body as JSON. Each mistake in it throws util::Error.
class ControlRequest {
 public:
  explicit ControlRequest(const HttpRequest& http);

  std::string parameter(const char* name) const;
  std::string parameterOr(const char* name, const std::string& missing) const;
  bool flag(const char* name) const;  // "true" or "false"; missing: false

  JsonValue body() const { return body_.root(); }  // an object; empty if the request has no body

 private:
  const HttpRequest& http_;
  const JsonDocument body_;
};

// Finds the function that answers a request, and answers failures with a status, a result code and one line.
class Router {
 public:
  using Answer = std::function<std::string(const ControlRequest&)>;  // the answer as JSON text

  using List = std::function<ListText(const ControlRequest&)>;

  // Opens the stream that answers the request; to refuse the request, throw before that.
  using OpenStream = std::function<std::weak_ptr<Stream>()>;
  using Follow = std::function<void(const ControlRequest&, const OpenStream&)>;

  void answer(const char* method, const char* path, Answer answer);
  void list(const char* path, List list);        // by GET
  void follow(const char* path, Follow follow);  // by GET

  void handle(HttpExchange& exchange) const;

 private:
  using Handler = std::function<void(const ControlRequest&, HttpExchange&)>;

  void dispatch(const HttpRequest& request, HttpExchange& exchange) const;

  std::map<std::string, std::map<std::string, Handler>> handlers_;  // by path and method
};

}  // namespace host

#endif
