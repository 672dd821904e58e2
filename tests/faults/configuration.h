// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_FAULTS_CONFIGURATION_H
#define CPP2C_TESTS_FAULTS_CONFIGURATION_H

#include <fstream>
#include <string>

namespace faults {

// Writes the configuration file of the session and of the client's service.
inline void writeConfiguration(const std::string& file) {
  std::ofstream(file) << R"({
  "heartbeat": {"limitMs": 60000},
  "modules": [")" MODULE R"("],
  "objects": [
    {
      "number": 1,
      "name": "Device.Session.",
      "leaves": {
        "Counter": {"type": "int"},
        "Text": {"type": "str", "default": "a default that is longer than a short string"},
        "Computed": {"type": "str", "computed": true}
      }
    },
    {
      "number": 2,
      "name": "Device.Ports.",
      "dynamic": true,
      "leaves": {"Address": {"type": "ipaddr"}, "Enabled": {"type": "bool"}},
      "instances": {"Device.Ports.configured.": {"Address": "192.0.2.1"}}
    }
  ]
}
)";
}

}  // namespace faults

#endif
