// SPDX-License-Identifier: MIT
#include "host/control/control.h"

#include "host/clock/clock.h"
#include "host/control/wall_time.h"
#include "host/loop/event_loop.h"

namespace {

// Time for the answer to go out, before nothing goes out any more.
constexpr timeval kBeforeStop{0, 50000};

void stopLoop(evutil_socket_t /*fd*/, short /*events*/, void* loop) {
  static_cast<EventLoop*>(loop)->stop();
}

}  // namespace

Control::Control(const Controlled& controlled, EventBase& base, const std::string& path,
                 const Connections::Limits& limits)
    : controlled_(controlled),
      started_(controlled.clock.wallTime()),
      stop_(evtimer_new(base.get(), stopLoop, &controlled.loop)),
      server_(
          base, path, [this](HttpExchange& exchange) { api_.handle(exchange); }, limits) {
  addConfigRoutes();
  addServiceRoutes();
  addDiagnosisRoutes();
  followNews();
}

Control::~Control() {
  controlled_.events.onEvent([](const EventService::Event&) {});
  controlled_.config.onChange([](const ConfigService::Change&) {});
  controlled_.log.onLine([](const LogService::Line&) {});
}

void Control::followNews() {
  controlled_.events.onEvent([this](const EventService::Event& event) {
    event_count_++;
    events_.publish(event);
  });
  controlled_.config.onChange([this](const ConfigService::Change& change) {
    change_count_++;
    changes_.publish(change);
  });
  controlled_.log.onLine([this](const LogService::Line& line) { lines_.publish(line); });
}

std::string Control::now() const {
  return isoTime(controlled_.clock.wallTime());
}

void Control::stopSoon() {
  if (stop_ == nullptr || evtimer_add(stop_.get(), &kBeforeStop) != 0) controlled_.loop.stop();
}
