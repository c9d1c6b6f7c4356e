// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <vector>

#include "editor/EditorShell.hpp"
#include "hosts/adapter/HostedUnit.hpp"
#include "rules/Rule.hpp"

namespace quillo {

/// A unit with its editor on a table of their own: no host application, no audio hardware. Cycles run when
/// `render` is called, and what the unit sends goes nowhere but into its log. [main] only.
class Desk {
public:
    /// Throws a `FatalError` for rules that cannot be installed.
    explicit Desk(std::vector<Rule> rules);

    [[nodiscard]] QuilloView& view() { return shell_.view(); }
    [[nodiscard]] MIDIQuilloAUAudioUnit& unit() { return hosted_.unit(); }

    /// Renders a cycle of this many frames with these messages at its start, after the last one. Throws the
    /// `FatalError` that the cycle may have ended with.
    void render(std::uint32_t frames, const std::vector<std::vector<std::uint8_t>>& messages = {});

    /// Runs what waits for the main thread, the log's entries among it.
    void drain() { shell_.drain(); }

private:
    HostedUnit hosted_;
    EditorShell shell_;
};

}  // namespace quillo
