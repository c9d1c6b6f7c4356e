// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/EditorShell.hpp"

#include <exception>
#include <utility>

#include "platform/FatalError.hpp"

namespace quillo {

EditorShell::EditorShell(EditorUnit& unit) : unit_(unit), view_(unit) {
    unit.viewDidLoad();
    drain();
    view_.advance(0);
    startTimerHz(drainsPerSecond);
}

void EditorShell::timerCallback() {
    drain();
    const auto now = juce::Time::getMillisecondCounterHiRes();
    view_.advance((now - std::exchange(lastTick_, now)) / 1000);
}

void EditorShell::drain() {
    attempt([this] { unit_.drain(); });
}

void EditorShell::attempt(const std::function<void()>& operation) {
    try {
        operation();
    } catch (const std::exception& error) {
        unit_.tellUser(wordsOf(error));
    }
}

}  // namespace quillo
