// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <vector>

#include "editor/EditorShell.hpp"
#include "rules/Rule.hpp"
#include "session/Session.hpp"

namespace quillo {

/// A session with its editor on a table of their own: no host application, no audio hardware. Blocks are
/// rendered when `render` is called, and what the rules send goes nowhere but into the log. [main] only.
class Desk {
public:
    /// Throws a `FatalError` for rules that cannot be installed.
    explicit Desk(std::vector<Rule> rules);

    [[nodiscard]] QuilloView& view() { return shell_.view(); }
    [[nodiscard]] Session& session() { return session_; }

    /// Renders a block of this many frames with these messages at its start, after the last one. Throws the
    /// `FatalError` that it may have ended with.
    void render(std::uint32_t frames, const std::vector<std::vector<std::uint8_t>>& messages = {});

    /// Runs what waits for the main thread, the log's entries among it.
    void drain() { shell_.drain(); }

private:
    Session session_;
    EditorShell shell_;
};

}  // namespace quillo
