// SPDX-License-Identifier: MIT
// A module whose operations are all one function: compilers merge functions with the same code.
#include "tests/contextctl/inspect/libraries/entry_points.h"

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

// In assembly, as not every compiler supports aliases of member functions.
asm(R"(
.macro fold operation
.globl \operation
.set \operation, _ZN6Folded6onLoadEv
.endm
fold _ZN6Folded7onStartEv
fold _ZN6Folded8onConfigEv
fold _ZN6Folded5onRunEv
fold _ZN6Folded10onUnconfigEv
fold _ZN6Folded6onStopEv
fold _ZN6Folded8onUnloadEv
fold _ZN6Folded14recvDependenceEv
)");

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
