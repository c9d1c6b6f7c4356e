// SPDX-License-Identifier: GPL-3.0-or-later
#include "realtime/EveryRule.hpp"

#include "support/TestRules.hpp"

namespace quillo::test {

namespace {

std::vector<RuleTriggerV2> messageTriggers() {
    return {onNoteOn(),    onNoteOff(),      onControlChange(7), onProgramChange(),
            onMIDIStart(), onMIDIContinue(), onMIDIStop()};
}

std::vector<RuleTriggerV2> otherTriggers() {
    using Host = HostTransportTriggerVariantsV2;
    return {onHost(Host::Start), onHost(Host::Continue), onHost(Host::Stop), onLoad()};
}

/// On channel values 0 to 4.
std::vector<RuleOutputVariantsV2> fixedOutputs() {
    return {noteOn(0, 60, 100),
            controlChange(1, 7, 64),
            programChange(channel(2), 1, byte(5)),
            protocol(StatusV2::channelPressure, channel(3), byte(9)),
            protocol(StatusV2::pitchWheel, channel(4), byte(0), byte(64)),
            systemExclusiveOf(1000)};
}

/// On the trigger's channel.
std::vector<RuleOutputVariantsV2> generatedOutputs() {
    return {protocol(StatusV2::noteOn, triggerChannel, triggerByte, triggerByte),
            protocol(StatusV2::noteOff, triggerChannel, triggerByte, byte(0)),
            protocol(StatusV2::channelPressure, triggerChannel, triggerByte),
            protocol(StatusV2::pitchWheel, triggerChannel, byte(0), triggerByte),
            programChange(triggerChannel, 1, triggerByte)};
}

void add(std::vector<Rule>& rules, const std::vector<RuleTriggerV2>& triggers,
         const std::vector<RuleOutputVariantsV2>& outputs) {
    for (const auto& trigger : triggers) {
        for (const auto& output : outputs) {
            for (const std::int64_t delay : {0, 3, 50}) {
                rules.push_back(rule(trigger, send(output, delay)));
            }
        }
    }
}

}  // namespace

RuleOutputVariantsV2 systemExclusiveOf(std::size_t bytes) {
    return systemExclusive(std::vector<std::uint8_t>(bytes - 2, 0x55));
}

std::vector<Rule> everyRule() {
    std::vector<Rule> rules;
    add(rules, messageTriggers(), fixedOutputs());
    add(rules, messageTriggers(), generatedOutputs());
    add(rules, otherTriggers(), fixedOutputs());
    return rules;
}

}  // namespace quillo::test
