// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_CONTEXTCTL_CONTEXT_DOUBLE_H
#define CPP2C_TESTS_CONTEXTCTL_CONTEXT_DOUBLE_H

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <event2/event.h>
#include <event2/http.h>

namespace contextctl {

// A test double of a context with a control socket. It gives prepared answers and records the requests. It
// runs on the thread of its event base.
class ContextDouble {
 public:
  explicit ContextDouble(const std::string& socket);
  ~ContextDouble();
  ContextDouble(const ContextDouble&) = delete;
  ContextDouble& operator=(const ContextDouble&) = delete;

  event_base* base() const { return base_.get(); }

  // `request` is the method and the target, as in "GET /leaf?name=A".
  void answer(const std::string& request, const std::string& body, int status = 200);
  void onAnswered(const std::string& request, std::function<void()> action);        // after it was answered
  void stream(const std::string& request, const std::vector<std::string>& pieces);  // stays open
  void streamAndClose(const std::string& request, const std::vector<std::string>& pieces);
  void keepSilent(const std::string& request);

  const std::vector<std::string>& requests() const { return requests_; }  // with their bodies after a space

 private:
  enum class Manner { kAnswer, kStream, kStreamAndClose, kSilent };
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
  std::map<std::string, std::function<void()>> actions_;
  std::vector<std::string> requests_;
  std::vector<evhttp_request*> unfinished_;  // owned here until they end, even if their clients have closed
};

}  // namespace contextctl

#endif
