// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

#include "editor/QuilloView.hpp"
#include "session/EditorUnit.hpp"

namespace quillo {

/// What every window of the editor has in it: the view over a unit, and the clock by which it follows what
/// happens there. Edits and messages sent by hand go to the unit at once. JUCE's events, with its timers,
/// must be dispatched meanwhile. [main]
class EditorShell final : private juce::Timer {
public:
    /// In points, each way: no window makes the view smaller.
    static constexpr int leastLength = 200;

    static constexpr int drainsPerSecond = 30;

    /// Shows what the unit runs, in the size that the view should open with. The unit must outlive the shell.
    explicit EditorShell(EditorUnit& unit);

    [[nodiscard]] QuilloView& view() { return view_; }

    /// Drains the unit now; the clock does so anyway, and lets the view's time pass. An exception is an
    /// alert, as by `attempt`.
    void drain();

    /// Runs `operation` and lets no exception out: the user sees it as an alert.
    void attempt(const std::function<void()>& operation);

private:
    void timerCallback() override;

    EditorUnit& unit_;
    QuilloView view_;
    double lastTick_ = juce::Time::getMillisecondCounterHiRes();
};

}  // namespace quillo
