// SPDX-License-Identifier: MIT
#include "host/http/long_reply.h"

#include <exception>
#include <utility>

namespace host {

void LongReplies::start(evhttp_request* request, const std::string& first, NextPiece next) {
  evhttp_connection* connection = evhttp_request_get_connection(request);
  evhttp_connection_set_closecb(connection, onClosed, this);
  LongReply& reply = replies_.try_emplace(connection, request, std::move(next)).first->second;
  connections_.longReplyIn(evhttp_connection_get_bufferevent(connection));
  reply.reply.write(first, onSent, this);
}

void LongReplies::onSent(evhttp_connection* connection, void* self) noexcept {
  try {
    static_cast<LongReplies*>(self)->sendNext(connection);
  } catch (const std::exception&) {  // the reply cannot be completed
    evhttp_connection_free(connection);
  }
}

void LongReplies::onClosed(evhttp_connection* connection, void* self) noexcept {
  static_cast<LongReplies*>(self)->replies_.erase(connection);
}

void LongReplies::sendNext(evhttp_connection* connection) {
  LongReply& reply = replies_.at(connection);
  Piece piece = reply.next();
  if (piece.is_last) return finish(connection, piece.text + '\n');
  connections_.longReplyIn(evhttp_connection_get_bufferevent(connection));
  reply.reply.write(piece.text, onSent, this);
}

void LongReplies::finish(evhttp_connection* connection, const std::string& last) {
  LongReply& reply = replies_.at(connection);
  reply.reply.write(last);
  connections_.requestIn(evhttp_connection_get_bufferevent(connection));
  reply.reply.end();
  replies_.erase(connection);
}

}  // namespace host
