// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "hosts/jack/PortDescription.hpp"

namespace quillo {

/// The server as the program's window shows it.
struct ServerStatus {
    struct Port {
        PortDescription port;
        bool isConnected = false;  ///< to our input, or to our output
    };

    std::string server;
    std::uint32_t sampleRate = 0;
    std::vector<Port> sources;  ///< every port of others that gives MIDI, in the server's order
    std::vector<Port> targets;  ///< every one that takes MIDI
};

}  // namespace quillo
