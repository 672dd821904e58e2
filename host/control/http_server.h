// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_CONTROL_HTTP_SERVER_H
#define CPP2C_HOST_CONTROL_HTTP_SERVER_H

#include <event2/http.h>
#include <event2/listener.h>

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "host/control/broken_pipe.h"
#include "host/control/connections.h"
#include "host/control/stream.h"
#include "host/control/unix_socket.h"
#include "host/loop/event_base.h"

struct HttpRequest {
  std::string method;
  std::string path;
  std::map<std::string, std::string> query;
  std::string body;
};

// One request that waits for its answer: a reply or the beginning of a stream.
class HttpExchange {
 public:
  HttpExchange(evhttp_request* request, Streams& streams, Connections& connections)
      : request_(request), streams_(streams), connections_(connections) {}

  HttpRequest request() const;  // throws a Refusal if the query is none
  void reply(int status, const std::string& json);
  std::weak_ptr<Stream> stream();  // throws a Refusal if there are too many

 private:
  evhttp_request* const request_;
  Streams& streams_;
  Connections& connections_;
};

// Serves HTTP on a Unix socket, on the loop's own thread, to the owner of this process and to root.
class HttpServer {
 public:
  using Handler = std::function<void(HttpExchange&)>;

  // Throws StartError if the socket cannot be made.
  HttpServer(EventBase& base, const std::string& path, Handler handler,
             const Connections::Limits& limits = Connections::Limits());

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
  evconnlistener* const listener_;              // the server's
  Connections connections_;
};

#endif
