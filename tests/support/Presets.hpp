// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "persistence/PluginData.hpp"
#include "platform/Data.hpp"
#include "support/TestRules.hpp"

/// Presets for tests, of rules in the fewest words.
namespace quillo::fixture {

using test::onHost;
using test::onLoad;
using test::onMIDIStart;

inline Data presetOf(std::vector<Rule> rules) {
    return PluginData{std::move(rules)}.write();
}

inline RuleTriggerV2 onAnyNote(PassThroughV2 policy = PassThroughV2::PassThrough) {
    return test::onNoteOn(test::any, test::any, policy);
}

/// Sends `message` as soon as the preset is loaded.
inline Rule loadRule(const RuleOutputVariantsV2& message) {
    return test::rule(onLoad(), test::send(message), "on load");
}

/// Sends a controller on channel 1 with value 1, to be told by its number.
inline Rule controllerRule(const RuleTriggerV2& trigger, std::uint8_t controller, std::int64_t delay = 0) {
    const auto message = test::controlChange(0, controller, 1);
    return test::rule(trigger, test::send(message, delay), "controller " + std::to_string(controller));
}

}  // namespace quillo::fixture
