// SPDX-License-Identifier: GPL-3.0-or-later
#include "programs/editor/Desk.hpp"

#include <utility>

namespace quillo {

namespace {

EditorUnit& withRules(EditorUnit& unit, std::vector<Rule> rules) {
    unit.onRulesChanged(std::move(rules));
    return unit;
}

}  // namespace

Desk::Desk(std::vector<Rule> rules) : shell_(withRules(hosted_, std::move(rules))) {}

void Desk::render(std::uint32_t frames, const std::vector<std::vector<std::uint8_t>>& messages) {
    auto& renderer = hosted_.renderer();
    renderer.begin(frames);
    for (const auto& message : messages) {
        renderer.receive(0, message);
    }
    if (renderer.end() != noErr) {
        unit().processor->fatalErrors.raise();
    }
}

}  // namespace quillo
