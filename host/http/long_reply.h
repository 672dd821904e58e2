// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_HTTP_LONG_REPLY_H
#define CPP2C_HOST_HTTP_LONG_REPLY_H

#include <event2/http.h>

#include <functional>
#include <map>
#include <string>

#include "host/http/connections.h"
#include "host/http/open_reply.h"

namespace host {

// The next piece of a text. Not empty.
struct Piece {
  std::string text;
  bool is_last;
};
using NextPiece = std::function<Piece()>;

// The replies that are sent in pieces. The next piece is asked for when the client has room for it, so that
// at most one is in memory for each client and the loop has its turn in between. The time limit of a request
// applies to each piece.
class LongReplies {
 public:
  explicit LongReplies(Connections& connections) : connections_(connections) {}

  // Sends the first piece, which is not the last.
  void start(evhttp_request* request, const std::string& first, NextPiece next);

 private:
  struct LongReply {
    LongReply(evhttp_request* request, NextPiece next_piece) : reply(request), next(std::move(next_piece)) {}

    OpenReply reply;
    const NextPiece next;
  };

  static void onSent(evhttp_connection* connection, void* self) noexcept;
  static void onClosed(evhttp_connection* connection, void* self) noexcept;
  void sendNext(evhttp_connection* connection);
  void finish(evhttp_connection* connection, const std::string& last);

  Connections& connections_;
  std::map<evhttp_connection*, LongReply> replies_;
};

}  // namespace host

#endif
