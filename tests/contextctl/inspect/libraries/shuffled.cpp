// SPDX-License-Identifier: MIT
// A module whose first two operations are swapped. Each returns a different value, so that the compiler
// cannot merge them.
#include <string>

#include "tests/contextctl/inspect/libraries/entry_points.h"

class EXPORTED Shuffled {
 public:
  virtual ~Shuffled();
  virtual int onStart();
  virtual int onLoad();
  virtual int onConfig(std::string name, int arg);
  virtual int onRun();
  virtual int onUnconfig(std::string name, int arg);
  virtual int onStop();
  virtual int onUnload();
  virtual int recvDependence(std::string name);
};

Shuffled::~Shuffled() = default;

int Shuffled::onStart() {
  return 1;
}

int Shuffled::onLoad() {
  return 2;
}

int Shuffled::onConfig(std::string, int) {
  return 3;
}

int Shuffled::onRun() {
  return 4;
}

int Shuffled::onUnconfig(std::string, int) {
  return 5;
}

int Shuffled::onStop() {
  return 6;
}

int Shuffled::onUnload() {
  return 7;
}

int Shuffled::recvDependence(std::string) {
  return 8;
}

void* getInstance(void*) {
  return new Shuffled;
}

void relInstance(void* instance) {
  delete static_cast<Shuffled*>(instance);
}
