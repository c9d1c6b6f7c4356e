// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace quillo {

/// A MIDI port of the server.
struct PortDescription {
    std::string name;                  ///< in full: "client:port"
    std::vector<std::string> aliases;  ///< other full names that the server knows it by
    bool givesMIDI = false;            ///< whether one can listen to it; else it takes MIDI
    bool isOurs = false;
};

}  // namespace quillo
