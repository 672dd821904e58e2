// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_HTTP_SERVER_H
#define CPP2C_HOST_HTTP_SERVER_H

#include <event2/http.h>
#include <event2/listener.h>

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "host/http/broken_pipe.h"
#include "host/http/connections.h"
#include "host/http/stream.h"
#include "host/http/unix_socket.h"
#include "host/loop/event_base.h"

namespace host {

struct HttpRequest {
  std::string method;
  std::string path;
  std::map<std::string, std::string> query;
  std::string body;
};

// One request that is to be answered once: by a reply, a refusal or a stream.
class HttpExchange {
 public:
  HttpExchange(evhttp_request* request, Streams& streams, Connections& connections)
      : request_(request), streams_(streams), connections_(connections) {}

  HttpRequest request() const;  // throws util::Error for a malformed query

  void reply(int status, const std::string& json);
  void refuse(int status, int code, const std::string& error);  // {"error": ..., "result": code}
  std::weak_ptr<Stream> stream();                               // throws util::Error if there are too many

 private:
  evhttp_request* const request_;
  Streams& streams_;
  Connections& connections_;
};

// Serves HTTP on a Unix socket, on the loop's thread, to processes of the same user and of root.
class HttpServer {
 public:
  using Handler = std::function<void(HttpExchange&)>;

  // Throws util::Error if the socket cannot be created.
  HttpServer(EventBase& base, const std::string& path, Handler handler, const Connections::Limits& limits,
             Connections::Log log);

  std::size_t clients() const { return connections_.count(); }

 private:
  struct FreeServer {
    void operator()(evhttp* server) const { evhttp_free(server); }
  };

  static bufferevent* onAccept(event_base* base, void* self);
  static void onRequest(evhttp_request* request, void* self);

  const BrokenPipe broken_pipe_;
  const Handler handler_;
  UnixSocket socket_;
  Streams streams_;
  std::unique_ptr<evhttp, FreeServer> server_;  // closes its connections, which ends their streams
  evconnlistener* const listener_;              // owned by the server
  Connections connections_;
};

}  // namespace host

#endif
