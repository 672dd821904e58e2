// SPDX-License-Identifier: MIT
// A module whose operations are all one function, as compilers make it of functions with the same code.
#include "tests/contextctl/libraries/entry_points.h"

#define FOLDED __attribute__((alias("_ZN6Folded6onLoadEv")))

class EXPORTED Folded {
 public:
  virtual ~Folded();
  virtual int onLoad();
  virtual int onStart() FOLDED;
  virtual int onConfig() FOLDED;
  virtual int onRun() FOLDED;
  virtual int onUnconfig() FOLDED;
  virtual int onStop() FOLDED;
  virtual int onUnload() FOLDED;
  virtual int recvDependence() FOLDED;
};

Folded::~Folded() = default;

int Folded::onLoad() {
  return 0;
}

void* getInstance(void*) {
  return new Folded;
}

void relInstance(void* instance) {
  delete static_cast<Folded*>(instance);
}
