// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "persistence/PluginData.hpp"
#include "platform/Data.hpp"

namespace quillo::fixture {

/// Rules for tests, in the fewest words.

inline Data presetOf(std::vector<Rule> rules) {
    return PluginData{std::move(rules)}.write();
}

inline RuleTriggerV2 onLoad() {
    return RuleTriggerV2::OnLoad{};
}

inline RuleTriggerV2 onTransport(HostTransportTriggerVariantsV2 change) {
    return RuleTriggerV2::HostTransport{{change, PassThroughV2::PassThrough}};
}

inline RuleTriggerV2 onVoice(const VoiceCategoryTriggerVariantsV2& voice,
                             PassThroughV2 policy = PassThroughV2::PassThrough) {
    const MessageBasedTriggerVariantsV2 message =
        MessageBasedTriggerVariantsV2::VoiceCategory{{voice, TriggerValueV2::AnyValue{}}};
    return RuleTriggerV2::MessageBased{{message, policy}};
}

inline RuleTriggerV2 onAnyNote(PassThroughV2 policy = PassThroughV2::PassThrough) {
    return onVoice(VoiceCategoryTriggerVariantsV2::NoteOn{TriggerValueV2::AnyValue{}}, policy);
}

inline RuleTriggerV2 onMIDIStart(PassThroughV2 policy = PassThroughV2::PassThrough) {
    return RuleTriggerV2::MessageBased{{MessageBasedTriggerVariantsV2::Start{}, policy}};
}

/// Sends `message` as soon as the preset is loaded.
inline Rule loadRule(const RuleOutputVariantsV2& message) {
    return {{message, {0}}, onLoad(), "on load"};
}

/// Sends a controller on channel 1 with value 1, to be told by its number.
inline Rule controllerRule(const RuleTriggerV2& trigger, std::uint8_t controller, std::int64_t delay = 0) {
    const RuleOutputVariantsV2 message = RuleOutputVariantsV2::Protocol{
        StatusByteV2::JustStatus{StatusV2::CC}, GenericByteV2::Value{controller}, GenericByteV2::Value{1}};
    return {{message, {delay}}, trigger, "controller " + std::to_string(controller)};
}

}  // namespace quillo::fixture
