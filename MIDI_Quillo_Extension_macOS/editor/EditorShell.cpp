// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/EditorShell.hpp"

#include <exception>
#include <utility>

#include "platform/FatalError.hpp"

namespace quillo {

EditorShell::EditorShell(EditorUnit& unit)
    : unit_(unit),
      view_(
          unit.model(), [&unit](std::vector<Rule> rules) { unit.onRulesChanged(std::move(rules)); },
          [&unit](const RuleOutputVariantsV2& message) { unit.onInstantMessageClick(message); }) {
    unit.viewDidLoad();
    drain();
    startTimerHz(drainsPerSecond);
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
