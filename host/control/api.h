// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_CONTROL_API_H
#define CPP2C_HOST_CONTROL_API_H

#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>

#include "host/control/http_server.h"

// One request in terms of JSON. What it lacks, or has in the wrong form, is a Refusal.
class ApiRequest {
 public:
  explicit ApiRequest(const HttpRequest& http);
  ~ApiRequest();

  std::string parameter(const char* name) const;  // of the query
  std::string parameterOr(const char* name, const std::string& other) const;
  bool flag(const char* name) const;  // of the query: "true"; absent: false

  // Refuses members of the body that are not among these.
  void expectOnly(std::initializer_list<const char*> names) const;
  std::string text(const char* name) const;  // of the body
  int number(const char* name) const;        // 32 bits
  bool flagOf(const char* name) const;       // absent: false

 private:
  const nlohmann::json& member(const char* name) const;

  const HttpRequest& http_;
  std::unique_ptr<const nlohmann::json> body_;
};

// Which request is answered by what.
class Api {
 public:
  using Answer = std::function<nlohmann::json(const ApiRequest&)>;
  using Follow = std::function<void(const ApiRequest&, const std::function<std::weak_ptr<Stream>()>&)>;

  void answer(const char* method, const char* path, Answer answer);
  void follow(const char* path, Follow follow);  // by GET; to refuse, it throws before it opens the stream

  void handle(HttpExchange& exchange) const;

 private:
  using Handler = std::function<void(const ApiRequest&, HttpExchange&)>;

  const Handler& find(const HttpRequest& request) const;

  std::map<std::string, std::map<std::string, Handler>> handlers_;  // by path and method
};

// As one line. Bytes that are no UTF-8 are replaced: JSON has no place for them.
std::string lineOf(const nlohmann::json& value);

#endif
