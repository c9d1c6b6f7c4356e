// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/editor/Desk.hpp"

#include <utility>

namespace quillo {

Desk::Desk(std::vector<Rule> rules) {
    auto& controller = hosted_.controller();
    hosted_.unit().processor->setRules(std::move(rules));
    view_ = std::make_unique<QuilloView>(
        controller.model(), [this](std::vector<Rule> changed) { hosted_.onRulesChanged(std::move(changed)); },
        [&controller](const RuleOutputVariantsV2& message) { controller.onInstantMessageClick(message); });
    controller.viewDidLoad();
}

Desk::~Desk() = default;

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
