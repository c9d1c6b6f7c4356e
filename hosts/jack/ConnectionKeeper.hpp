// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <set>
#include <string>
#include <vector>

#include "hosts/jack/PortDescription.hpp"
#include "hosts/jack/PortPattern.hpp"

namespace quillo {

/// Decides which ports a client is connected to: those whose full name or alias holds a match of one of the
/// patterns, and those that it was connected to when they went, or when the session was saved. It is asked
/// whenever a port appears, so that connections come back with their device; what the user disconnects by
/// hand stays so until then.
///
/// Ports of the client itself never match. [main]
class ConnectionKeeper {
public:
    /// Throws a `UsageError` that names the option and the invalid pattern; an empty one is invalid.
    ConnectionKeeper(const std::vector<std::string>& connectIn, const std::vector<std::string>& connectOut);

    /// These ports went while the client's input and output were connected to them. They are connected again
    /// when they appear, each once, and so are those that are remembered already.
    void remember(std::vector<std::string> sources, std::vector<std::string> targets);
    /// Nothing is remembered any more.
    void forget();

    /// What is remembered and has not appeared, in alphabetical order.
    [[nodiscard]] const std::set<std::string>& missingSources() const { return sources_.remembered; }
    [[nodiscard]] const std::set<std::string>& missingTargets() const { return targets_.remembered; }

    /// Whether a port that has appeared is to be connected: to the client's input if it gives MIDI, to its
    /// output if it takes MIDI.
    [[nodiscard]] bool takes(const PortDescription& port);

private:
    struct Side {
        std::vector<PortPattern> patterns;
        std::set<std::string> remembered;
    };

    Side sources_;
    Side targets_;
};

}  // namespace quillo
