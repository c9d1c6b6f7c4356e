// SPDX-License-Identifier: GPL-3.0-or-later
#include "programs/editor/DemoRules.hpp"

#include <initializer_list>
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

RuleEntry bassSplit() {
    RuleEntry entry;
    entry.name = "Bass split";
    entry.trigger.type = TriggerEntryType::NoteOn;
    entry.trigger.channel = TriggerValueV2::Value{0};
    entry.trigger.note = TriggerValueV2::Value{36};
    entry.trigger.passThrough = PassThroughV2::EatMatching;
    entry.output.channel = RuleOutputChannelV2::Value{1};
    entry.output.note = GenericByteV2::Value{48};
    entry.output.velocity = GenericByteV2::RespectiveTriggerByte{};
    return entry;
}

RuleEntry pedalBringsStrings() {
    RuleEntry entry;
    entry.name = "Pedal brings strings";
    entry.trigger.type = TriggerEntryType::ControlChange;
    entry.trigger.controller = 64;
    entry.trigger.controllerValue = TriggerValueV2::Value{127};
    entry.output.type = OutputEntryType::ProgramChange;
    entry.output.program = GenericByteV2::Value{48};
    return entry;
}

RuleEntry echoOfEachNote() {
    RuleEntry entry;
    entry.name = "Echo";
    entry.trigger.type = TriggerEntryType::NoteOn;
    entry.trigger.channel = TriggerValueV2::Value{1};
    entry.output.channel = RuleOutputChannelV2::Value{3};
    entry.output.note = GenericByteV2::RespectiveTriggerByte{};
    entry.output.velocity = GenericByteV2::RespectiveTriggerByte{};
    entry.output.delay.ms = 300;
    return entry;
}

RuleEntry silenceAtStop() {
    RuleEntry entry;
    entry.name = "Silence at the stop";
    entry.trigger.type = TriggerEntryType::HostStop;
    entry.output.type = OutputEntryType::ControlChange;
    entry.output.controller = GenericByteV2::Value{123};
    entry.output.controllerValue = GenericByteV2::Value{0};
    return entry;
}

std::vector<Rule> rulesOf(std::initializer_list<RuleEntry> entries) {
    std::vector<Rule> rules;
    for (const auto& entry : entries) {
        rules.push_back(ruleFromEntry(entry));
    }
    return rules;
}

}  // namespace

std::vector<Rule> demoRules() {
    return rulesOf({modWheelToVolume(), soundAtStart(), resetSynth(), echo()});
}

std::vector<Rule> performanceRules() {
    return rulesOf({bassSplit(), pedalBringsStrings(), echoOfEachNote(), silenceAtStop()});
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

std::vector<Rule> manyRuns(std::size_t runs, std::size_t rulesEach) {
    std::vector<Rule> rules;
    for (std::size_t run = 0; run < runs; ++run) {
        auto entry = defaultEntry(OutputEntryType::NoteOn, static_cast<std::int64_t>(run) + 1);
        entry.trigger.type = TriggerEntryType::NoteOn;
        for (std::size_t note = 0; note < rulesEach; ++note) {
            entry.trigger.note = TriggerValueV2::Value{static_cast<std::uint8_t>(note)};
            rules.push_back(ruleFromEntry(entry));
        }
    }
    return rules;
}

}  // namespace quillo
