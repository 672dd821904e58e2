// SPDX-License-Identifier: MIT
// A module whose operations are all one function, as compilers make it of functions with the same code.
#include "tests/contextctl/libraries/entry_points.h"

class EXPORTED Folded {
 public:
  virtual ~Folded();
  virtual int onLoad();
  virtual int onStart();
  virtual int onConfig();
  virtual int onRun();
  virtual int onUnconfig();
  virtual int onStop();
  virtual int onUnload();
  virtual int recvDependence();
};

// In assembler, which all compilers take: not all make aliases of member functions.
#define FOLD(name) asm(".globl " name "\n.set " name ", _ZN6Folded6onLoadEv")
FOLD("_ZN6Folded7onStartEv");
FOLD("_ZN6Folded8onConfigEv");
FOLD("_ZN6Folded5onRunEv");
FOLD("_ZN6Folded10onUnconfigEv");
FOLD("_ZN6Folded6onStopEv");
FOLD("_ZN6Folded8onUnloadEv");
FOLD("_ZN6Folded14recvDependenceEv");

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
