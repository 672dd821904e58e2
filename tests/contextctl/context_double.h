// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_CONTEXTCTL_CONTEXT_DOUBLE_H
#define CPP2C_TESTS_CONTEXTCTL_CONTEXT_DOUBLE_H

#include <map>
#include <memory>
#include <string>
#include <vector>

#include <event2/event.h>
#include <event2/http.h>

namespace contextctl {

// Takes the place of a context with a control socket: gives the answers that it has been told and keeps the
// requests. It lives on its event base's thread.
class ContextDouble {
 public:
  explicit ContextDouble(const std::string& socket);
  ~ContextDouble();
  ContextDouble(const ContextDouble&) = delete;
  ContextDouble& operator=(const ContextDouble&) = delete;

  event_base* base() const { return base_.get(); }

  // `request` is the method and the target, as "GET /leaf?name=A".
  void answer(const std::string& request, const std::string& body, int status = 200);
  void stream(const std::string& request, const std::vector<std::string>& pieces);  // then stays open
  void streamAndLeave(const std::string& request, const std::vector<std::string>& pieces);
  void keepSilent(const std::string& request);

  const std::vector<std::string>& requests() const { return requests_; }  // with their bodies, after a space

 private:
  enum class Manner { kAnswer, kStream, kStreamAndLeave, kSilent };
  struct Reply {
    Manner manner;
    int status;
    std::vector<std::string> pieces;
  };

  static void onRequest(evhttp_request* request, void* user);
  void reply(evhttp_request* request, const Reply& reply);

  std::unique_ptr<event_base, decltype(&event_base_free)> base_;
  std::unique_ptr<evhttp, decltype(&evhttp_free)> http_;
  std::map<std::string, Reply> replies_;
  std::vector<std::string> requests_;
  std::vector<evhttp_request*> unfinished_;  // ours until they are ended, even if their clients have gone
};

}  // namespace contextctl

#endif
