// SPDX-License-Identifier: GPL-3.0-or-later
#include "programs/editor/DemoRules.hpp"

#include <string>

#include "rules/RuleEntry.hpp"

namespace quillo {

namespace {

RuleEntry modWheelToVolume() {
    RuleEntry entry;
    entry.name = "Mod wheel to volume";
    entry.trigger.type = TriggerEntryType::ControlChange;
    entry.trigger.controller = 1;
    entry.trigger.passThrough = PassThroughV2::EatMatching;
    entry.output.type = OutputEntryType::ControlChange;
    entry.output.channel = RuleOutputChannelV2::TriggerChannel{};
    entry.output.controller = GenericByteV2::Value{7};
    entry.output.controllerValue = GenericByteV2::RespectiveTriggerByte{};
    entry.output.delay.ms = 250;
    return entry;
}

RuleEntry soundAtStart() {
    auto entry = defaultEntry(OutputEntryType::ProgramChange, 2);
    entry.trigger.type = TriggerEntryType::HostStart;
    entry.output.program = GenericByteV2::Value{5};
    return entry;
}

RuleEntry resetSynth() {
    RuleEntry entry;
    entry.name = "Reset synth";
    entry.output.type = OutputEntryType::SystemExclusive;
    entry.output.systemExclusive = {0x7E, 0x7F, 0x09, 0x01};
    return entry;
}

RuleEntry echo() {
    RuleEntry entry;
    entry.name = "Echo an octave up";
    entry.trigger.type = TriggerEntryType::NoteOn;
    entry.trigger.note = TriggerValueV2::Value{60};
    entry.trigger.channel = TriggerValueV2::Value{2};
    entry.output.note = GenericByteV2::Value{72};
    entry.output.velocity = GenericByteV2::RespectiveTriggerByte{};
    entry.output.channel = RuleOutputChannelV2::TriggerChannel{};
    entry.output.delay.ms = 375;
    return entry;
}

}  // namespace

std::vector<Rule> demoRules() {
    std::vector<Rule> rules;
    for (const auto& entry : {modWheelToVolume(), soundAtStart(), resetSynth(), echo()}) {
        rules.push_back(ruleFromEntry(entry));
    }
    return rules;
}

std::vector<Rule> manyRules(std::size_t count) {
    const auto demo = demoRules();
    std::vector<Rule> rules;
    rules.reserve(count);
    for (std::size_t index = 0; index < count; ++index) {
        rules.push_back(demo[index % demo.size()]);
        rules.back().name = "Message #" + std::to_string(index + 1);
    }
    return rules;
}

}  // namespace quillo
