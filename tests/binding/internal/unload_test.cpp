// SPDX-License-Identifier: MIT
// The destruction of the process-wide state, here at the end of the program.
#include <cstdio>
#include <cstdlib>
#include <functional>

#include <malloc.h>

#include <gtest/gtest.h>

#include "binding/cfm_observer.h"
#include "binding/data_provider.h"
#include "binding/event.h"
#include "binding/globals.h"
#include "binding/loop.h"
#include "tests/support/watched_heap.h"

namespace {

// The node of the only element of each container. It is freed together with the container.
struct Element {
  const char* name;
  const void* place;
};

Element g_elements[5];

bool holds(void* block, const void* place) {
  const std::less<const void*> before;
  const char* start = static_cast<const char*>(block);
  return !before(place, start) && before(place, start + malloc_usable_size(block));
}

void reportNode(void* block) {
  for (const Element& element : g_elements) {
    if (holds(block, element.place)) std::fprintf(stderr, "%s ", element.name);
  }
}

template <typename Adapter>
class Lasting : public Adapter {
 public:
  ~Lasting() override { std::fputs("destroyed ", stderr); }
};

void endWithFullContainers() {
  // Never deleted by the test, which checks that the containers do not delete them either.
  static auto& cfm = *new Lasting<__CfmC>;
  static auto& event = *new Lasting<__EventC>;
  static auto& provider = *new __DataProvider;
  static auto& watch = *new Lasting<__LoopData>;
  g_cfm_observers = {&cfm};
  g_event_observers = {&event};
  g_data_providers = {&provider};
  g_fd_watches = {{1, &watch}};
  g_reference_counts = {{"A", 1}};
  g_elements[0] = {"cfm", &g_cfm_observers.front()};
  g_elements[1] = {"event", &g_event_observers.front()};
  g_elements[2] = {"provider", &g_data_providers.front()};
  g_elements[3] = {"fd", &*g_fd_watches.begin()};
  g_elements[4] = {"reference", &*g_reference_counts.begin()};
  watched_heap::on_delete = reportNode;
  std::exit(0);
}

TEST(UnloadDeathTest, ContainersAreDestroyedInReverseOrderWithoutTheirAdapters) {
  EXPECT_EXIT(endWithFullContainers(), testing::ExitedWithCode(0), "^reference fd provider event cfm $");
}

}  // namespace
