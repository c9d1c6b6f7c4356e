// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <iosfwd>

#include "audiounit/MIDIQuilloAUAudioUnit.hpp"
#include "hosts/jack/LogTape.hpp"

namespace quillo {

/// Prints both logs of a unit, an entry a line, as they come: "in  [480] 90 3c 64    note-on 60 (C3), ...". [main]
class LogPrinter {
public:
    explicit LogPrinter(std::ostream& out) : out_(out) {}

    /// Listens to the unit from now on, besides whoever does already. The unit must not render after the printer
    /// is gone.
    void listenTo(MIDIQuilloAUAudioUnit& unit);

    /// Prints what has come since the last call. Nothing more is printed once the stream has failed.
    void print();

private:
    static constexpr std::size_t capacity = 16384;

    std::ostream& out_;
    LogTape tape_{capacity};
};

}  // namespace quillo
