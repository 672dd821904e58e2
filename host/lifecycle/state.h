// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_LIFECYCLE_STATE_H
#define CPP2C_HOST_LIFECYCLE_STATE_H

// How far a participant has come.
enum class State { kIdle, kLoaded, kStarted, kConfigured, kRunning };

// "idle", "loaded", "started", "configured" or "running".
inline const char* nameOf(State state) {
  static constexpr const char* kNames[] = {"idle", "loaded", "started", "configured", "running"};
  return kNames[static_cast<int>(state)];
}

#endif
