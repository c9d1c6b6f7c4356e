// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "commandline/Arguments.hpp"

namespace quillo {

/// What the user asks of `midi-quillo-jack`.
struct JackOptions {
    /// How long a client's name may be in bytes, with room for the number that makes it unique.
    static constexpr std::size_t longestName = 60;
    /// How large the window may be drawn.
    static constexpr double leastScale = 0.5;
    static constexpr double greatestScale = 4;

    std::optional<std::string> preset;    ///< the rules; those of the last session without it
    std::optional<std::string> server;    ///< the server's name; the default one without it
    std::string name = "midi-quillo";     ///< of the client, and of the session
    std::vector<std::string> connectIn;   ///< patterns of ports that the input is connected to
    std::vector<std::string> connectOut;  ///< patterns of ports that the output is connected to
    bool window = true;
    std::optional<double> scale;             ///< of the window; that of the display without it
    std::vector<std::uint8_t> panicMessage;  ///< how a message begins that ends all notes; empty for none
    bool startServer = false;
    bool wait = false;         ///< for a server that is not there
    bool log = false;          ///< print both event logs
    std::uint32_t goBack = 0;  ///< how many versions of the session's rules
    bool history = false;      ///< list the versions and end
    bool help = false;
    bool version = false;
};

/// The options that the program knows.
[[nodiscard]] std::span<const Option> jackOptions();

/// Reads the program's arguments. Throws a `UsageError` that names the option.
[[nodiscard]] JackOptions readJackOptions(std::span<const std::string> words);

}  // namespace quillo
