// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_HTTP_SERVER_H
#define CPP2C_HOST_HTTP_SERVER_H

#include <event2/http.h>
#include <event2/listener.h>
#include <signal.h>

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "host/http/connections.h"
#include "host/http/long_reply.h"
#include "host/http/stream.h"
#include "host/http/unix_socket.h"
#include "host/loop/event_base.h"
#include "util/harmless_signal.h"

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
  struct Replies {
    Connections& connections;
    LongReplies& long_replies;
    Streams& streams;
  };

  HttpExchange(evhttp_request* request, const Replies& replies) : request_(request), replies_(replies) {}

  HttpRequest request() const;  // throws util::Error for a malformed query

  void reply(int status, const std::string& json);  // throws std::bad_alloc
  void replyInPieces(NextPiece next);               // with status 200
  std::weak_ptr<Stream> stream();                   // throws util::Error if there are too many

  // {"error": ..., "result": code}. If a reply has begun, ends the connection instead.
  void refuse(int status, int code, const std::string& error);

 private:
  evhttp_request* const request_;
  const Replies replies_;
  bool has_begun_ = false;
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
  static void onRequest(evhttp_request* request, void* self) noexcept;
  void serve(evhttp_request* request);

  const util::HarmlessSignal broken_pipe_{SIGPIPE};  // libevent writes to clients that have closed
  const Handler handler_;
  UnixSocket socket_;
  Streams streams_;
  LongReplies long_replies_;
  std::unique_ptr<evhttp, FreeServer> server_;  // closes its connections, which ends their replies
  evconnlistener* const listener_;              // owned by the server
  Connections connections_;
};

}  // namespace host

#endif
