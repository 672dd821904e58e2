// SPDX-License-Identifier: MIT
#include "host/control/control.h"

#include "host/clock/clock.h"
#include "host/log/log_service.h"
#include "host/loop/event_loop.h"

namespace host {
namespace {

// Lets the answer to the request reach the client before the loop ends.
constexpr timeval kStopDelay{0, 50000};

void stopLoop(evutil_socket_t /*fd*/, short /*events*/, void* loop) {
  static_cast<EventLoop*>(loop)->stop();
}

}  // namespace

Control::Control(const ControlledServices& services, EventBase& base, const std::string& path,
                 const Connections::Limits& limits)
    : services_(services),
      activity_{services.clock.wallTime()},
      stop_(evtimer_new(base.get(), stopLoop, &services.loop)),
      server_(
          base, path, [this](HttpExchange& exchange) { router_.handle(exchange); }, limits,
          [this, path](int level, const std::string& text) {
            services_.log.record("control", level, (path + ": " + text).c_str());
          }) {
  addRoutes();
  publishItems();
}

Control::~Control() {
  services_.events.onEvent([](const EventService::Event&) {});
  services_.config.onChange([](const ConfigService::Change&) {});
  services_.log.onLine([](const LogService::Line&) {});
}

void Control::addRoutes() {
  addConfigRoutes(router_, services_.config);
  addChangeRoutes(router_, services_.config, change_followers_, services_.clock);
  addEventRoutes(router_, services_.events, event_followers_, services_.clock);
  addLogRoutes(router_, log_followers_, services_.clock);
  addLifecycleRoutes(router_, services_.lifecycle, [this] { stopSoon(); });
  addRegistrationRoutes(router_, services_.registry, services_.history);
  addStatisticsRoutes(router_, services_.registry, services_.clock, activity_,
                      [this] { return server_.clients(); });
}

void Control::publishItems() {
  services_.events.onEvent([this](const EventService::Event& event) {
    activity_.events++;
    event_followers_.publish(event);
  });
  services_.config.onChange([this](const ConfigService::Change& change) {
    activity_.changes++;
    change_followers_.publish(change);
  });
  services_.log.onLine([this](const LogService::Line& line) { log_followers_.publish(line); });
}

void Control::stopSoon() {
  if (stop_ == nullptr || evtimer_add(stop_.get(), &kStopDelay) != 0) services_.loop.stop();
}

}  // namespace host
