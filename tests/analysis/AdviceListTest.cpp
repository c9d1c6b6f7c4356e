// SPDX-License-Identifier: GPL-3.0-or-later
/// Sixty presets as musicians make them: forty with one mistake each, and twenty that are right.
#include <gmock/gmock.h>

#include <set>
#include <string>
#include <vector>

#include "analysis/RuleAdvice.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using Kind = Advice::Kind;
using Transport = HostTransportTriggerVariantsV2;
using Rules = std::vector<Rule>;

struct Preset {
    std::string story;
    Rules rules;
    Kind mistake = Kind::neverFires;  ///< of a preset that is right: not looked at
};

RuleOutputV2 noteOnTo(std::uint8_t onChannel, std::int64_t delay = 0) {
    return send(protocol(StatusV2::noteOn, channel(onChannel), triggerByte, triggerByte), delay);
}

RuleOutputV2 noteOffTo(std::uint8_t onChannel, std::int64_t delay = 0) {
    return send(protocol(StatusV2::noteOff, channel(onChannel), triggerByte, triggerByte), delay);
}

RuleOutputV2 controllerTo(std::uint8_t onChannel, std::uint8_t controller) {
    return send(protocol(StatusV2::CC, channel(onChannel), byte(controller), triggerByte));
}

RuleOutputV2 bend(std::uint8_t low, std::uint8_t high) {
    return send(protocol(StatusV2::pitchWheel, channel(0), byte(low), byte(high)));
}

RuleOutputV2 noteOff(std::uint8_t onChannel, std::uint8_t note, std::int64_t delay = 0) {
    return send(protocol(StatusV2::noteOff, channel(onChannel), byte(note), byte(64)), delay);
}

Rule program(RuleTriggerV2 trigger, std::uint8_t onChannel, std::uint8_t number, std::int64_t delay = 0) {
    return rule(std::move(trigger), send(programChange(channel(onChannel), 0, byte(number)), delay));
}

const auto resetGM = systemExclusive({0x7E, 0x7F, 0x09, 0x01});
const auto resetGS = systemExclusive({0x41, 0x10, 0x42, 0x12, 0x40, 0x00, 0x7F, 0x00, 0x41});
const auto resetXG = systemExclusive({0x43, 0x10, 0x4C, 0x00, 0x00, 0x7E, 0x00});

/// The keys from `first` on, one rule each.
Rules keys(std::size_t count, std::uint8_t first, PassThroughV2 policy, bool isPress, std::uint8_t onChannel,
           int up = 0) {
    Rules rules;
    for (std::size_t i = 0; i < count; ++i) {
        const auto key = static_cast<std::uint8_t>(first + i);
        const auto note = byte(static_cast<std::uint8_t>(key + up));
        const auto status = isPress ? StatusV2::noteOn : StatusV2::noteOff;
        rules.push_back(
            rule(isPress ? onNoteOn(exactly(key), any, policy) : onNoteOff(exactly(key), any, policy),
                 send(protocol(status, channel(onChannel), note, triggerByte)), "Left hand"));
    }
    return rules;
}

Rules joined(Rules first, const Rules& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

std::vector<Preset> presetsWithAMistake() {
    return {
        {"the split stands below the layer that eats all",
         {rule(onNoteOn(any, any, eatMatching), noteOnTo(1)),
          rule(onNoteOff(any, any, eatMatching), noteOffTo(1)), program(onNoteOn(exactly(36)), 2, 5)},
         Kind::neverFires},
        {"a gate for the pedal above the program buttons",
         {rule(onControlChange(64, any, any, eatNonMatching), volume), program(onControlChange(20), 0, 5)},
         Kind::neverFires},
        {"channel 17", {rule(onControlChange(64, any, exactly(16)), volume)}, Kind::neverFires},
        {"note 128", {rule(onNoteOn(exactly(128)), volume)}, Kind::impossibleNumber},
        {"stop silences everything, and swallows everything",
         {rule(onHost(Transport::Stop, eatNonMatching), send(controlChange(0, 123, 0)))},
         Kind::swallowsAllMIDI},
        {"a note at load that nothing ends",
         {rule(onLoad(), send(noteOn(0, 36, 100)))},
         Kind::neverEndsNotes},
        {"a layer without its releases", {rule(onNoteOn(), noteOnTo(1))}, Kind::neverEndsNotes},
        {"a pedal that plays a bass note for ever",
         {rule(onControlChange(64, exactly(127), any, eatMatching), send(noteOn(1, 36, 90))),
          rule(onControlChange(64, exactly(0), any, eatMatching), volume)},
         Kind::neverEndsNotes},
        {"an echo whose end does not wait",
         {rule(onNoteOn(), noteOnTo(1, 300)), rule(onNoteOff(), noteOffTo(1))},
         Kind::endsNotesTooSoon},
        {"note-offs are eaten to mute a click",
         {rule(onNoteOff(any, any, eatMatching), volume)},
         Kind::swallowsNoteEnds},
        {"only note-ons shall pass",
         {rule(onNoteOn(any, any, eatNonMatching), volume)},
         Kind::swallowsNoteEnds},
        {"a reset with F0 and F7 typed in",
         {rule(onLoad(), send(systemExclusive({0xF0, 0x7E, 0x7F, 0x09, 0x01, 0xF7})))},
         Kind::badSystemExclusive},
        {"a controller without a value",
         {rule(onNoteOn(), send(protocol(StatusV2::CC, channel(0), byte(7))))},
         Kind::incompleteOutput},
        {"volume 200", {rule(onLoad(), send(controlChange(0, 7, 200)))}, Kind::incompleteOutput},
        {"a dump that is too long",
         {rule(onLoad(), send(systemExclusive(std::vector<std::uint8_t>(70000))))},
         Kind::tooLongForVST3},
        {"MIDI Stop silences", {rule(onMIDIStop(), send(controlChange(0, 123, 0)))}, Kind::notInVST3},
        {"programs choose a song", {rule(onProgramChange(exactly(3)), volume)}, Kind::notInVST3},

        {"all notes at full velocity",
         {rule(onNoteOn(any, any, eatMatching),
               send(protocol(StatusV2::noteOn, triggerChannel, triggerByte, byte(127))))},
         Kind::restartsNotes},
        {"a fixed velocity on the layer",
         {rule(onNoteOn(), send(protocol(StatusV2::noteOn, channel(1), triggerByte, byte(80)))),
          rule(onNoteOff(), noteOffTo(1))},
         Kind::restartsNotes},
        {"a quiet note that is an end",
         {rule(onControlChange(80, exactly(127)), send(noteOn(0, 60, 0)))},
         Kind::silentNoteOn},
        {"the fine bank behind its program",
         {program(onLoad(), 0, 5), rule(onLoad(), send(controlChange(0, 32, 3)))},
         Kind::bankTooLate},
        {"the fine bank above, but later",
         {rule(onControlChange(20), send(controlChange(0, 32, 3), 50)), program(onControlChange(20), 0, 5)},
         Kind::bankTooLate},
        {"the bank of a pedal that a rule for all values brings too late",
         {program(onControlChange(20, exactly(127)), 0, 5),
          rule(onControlChange(20), send(controlChange(0, 32, 1)))},
         Kind::bankTooLate},
        {"the same rule twice",
         {rule(onControlChange(1), controllerTo(1, 11)),
          rule(onControlChange(1), controllerTo(1, 11), "Again")},
         Kind::sendsTwice},
        {"the same at load twice",
         {program(onLoad(), 0, 5), rule(onControlChange(7), controllerTo(2, 7)), program(onLoad(), 0, 5)},
         Kind::sendsTwice},
        {"the note passes and is sent again",
         {rule(onNoteOn(), send(protocol(StatusV2::noteOn, triggerChannel, triggerByte, triggerByte)))},
         Kind::doublesNotes},
        {"one key is sent again on its own channel",
         {rule(onNoteOn(exactly(60), exactly(0)), noteOnTo(0))},
         Kind::doublesNotes},
        {"pedal-up changes the sound and is eaten",
         {program(onControlChange(64, exactly(0), any, eatMatching), 0, 5)},
         Kind::keepsPedalDown},
        {"only the pressed soft pedal shall pass",
         {rule(onControlChange(67, exactly(127), any, eatNonMatching), volume)},
         Kind::keepsPedalDown},
        {"programs at load before a delayed General MIDI reset",
         {program(onLoad(), 0, 5), rule(onLoad(), send(resetGM, 100))},
         Kind::programUndone},
        {"a GS reset below the program",
         {program(onLoad(), 3, 5), rule(onLoad(), send(resetGS))},
         Kind::programUndone},
        {"an XG reset by a button, after its program",
         {rule(onControlChange(20), send(resetXG, 50)), program(onControlChange(20), 0, 5)},
         Kind::programUndone},
        {"sounds when the host starts, from the beginning only",
         {program(onHost(Transport::Start), 0, 5)},
         Kind::startOnly},
        {"a clock machine that Continue leaves silent",
         {rule(onHost(Transport::Start), send(controlChange(15, 80, 127))),
          rule(onHost(Transport::Stop), send(controlChange(15, 80, 0)))},
         Kind::startOnly},
        {"a bend by pedal that never comes back",
         {rule(onControlChange(64, exactly(127), any, eatMatching), bend(0, 127)),
          rule(onControlChange(64, exactly(0), any, eatMatching), volume)},
         Kind::keepsBend},
        {"the coarse half of a controller on another channel, the fine one left behind",
         {rule(onControlChange(1, any, any, eatMatching), controllerTo(1, 1)),
          rule(onControlChange(33), controllerTo(1, 33))},
         Kind::tearsFineValue},
        {"the fine bank eaten",
         {rule(onControlChange(32, any, any, eatMatching), volume)},
         Kind::tearsFineValue},
        {"the data slider as volume",
         {rule(onControlChange(6, any, any, eatMatching), controllerTo(0, 7))},
         Kind::tearsParameter},
        {"NRPN numbers, one half moved",
         {rule(onControlChange(99, any, exactly(0), eatMatching), controllerTo(1, 99))},
         Kind::tearsParameter},
        {"MPE notes of all channels to channel 1",
         {rule(onLoad(), send(controlChange(0, 101, 0))), rule(onLoad(), send(controlChange(0, 100, 6))),
          rule(onLoad(), send(controlChange(0, 6, 15))), rule(onNoteOn(any, any, eatMatching), noteOnTo(0)),
          rule(onNoteOff(any, any, eatMatching), noteOffTo(0))},
         Kind::tearsMPE},
    };
}

std::vector<Preset> presetsThatAreRight() {
    const auto down = exactly(127);
    const auto up = exactly(0);
    return {
        {"no rules", {}},
        {"a layer", {rule(onNoteOn(), noteOnTo(1)), rule(onNoteOff(), noteOffTo(1))}},
        {"everything to channel 2",
         {rule(onNoteOn(any, any, eatMatching), noteOnTo(1)),
          rule(onNoteOff(any, any, eatMatching), noteOffTo(1))}},
        {"a split with its own channel",
         joined(keys(24, 36, eatMatching, true, 1, 12), keys(24, 36, eatMatching, false, 1, 12))},
        {"an echo", {rule(onNoteOn(), noteOnTo(0, 300)), rule(onNoteOff(), noteOffTo(0, 300))}},
        {"an echo on the key's own channel",
         {rule(onNoteOn(), send(protocol(StatusV2::noteOn, triggerChannel, triggerByte, triggerByte), 250)),
          rule(onNoteOff(),
               send(protocol(StatusV2::noteOff, triggerChannel, triggerByte, triggerByte), 250))}},
        {"drum hits by pedal, without a note-off",
         {rule(onControlChange(64, down, any, eatMatching), send(noteOn(9, 36, 100))),
          rule(onControlChange(64, up, any, eatMatching), send(noteOn(9, 42, 70)))}},
        {"a layer of drums", {rule(onNoteOn(exactly(36)), noteOnTo(9))}},
        {"a bass note by pedal",
         {rule(onControlChange(64, down, any, eatMatching), send(noteOn(1, 36, 90))),
          rule(onControlChange(64, up, any, eatMatching), noteOff(1, 36))}},
        {"sounds at load, bank first",
         {rule(onLoad(), send(controlChange(0, 32, 3))), program(onLoad(), 0, 5), program(onLoad(), 1, 48)}},
        {"a reset, then the sounds", {rule(onLoad(), send(resetGM)), program(onLoad(), 0, 5, 200)}},
        {"a panic when the host stops",
         {rule(onHost(Transport::Stop), send(controlChange(0, 123, 0))),
          rule(onHost(Transport::Stop), send(controlChange(0, 121, 0)))}},
        {"start and continue",
         {program(onHost(Transport::Start), 0, 5), program(onHost(Transport::Continue), 0, 5)}},
        {"the soft pedal as sustain",
         {rule(onControlChange(67, any, any, eatMatching), controllerTo(0, 64))}},
        {"a pedal from 64 on",
         {rule(onControlChange(64, exactly(124), any, eatMatching), send(controlChange(0, 64, 127))),
          rule(onControlChange(64, exactly(3), any, eatMatching), send(controlChange(0, 64, 0)))}},
        {"the wheel as expression", {rule(onControlChange(1, any, any, eatMatching), controllerTo(0, 11))}},
        {"the wheel with both halves",
         {rule(onControlChange(1, any, any, eatMatching), controllerTo(1, 1)),
          rule(onControlChange(33, any, any, eatMatching), controllerTo(1, 33))}},
        {"a bend by pedal, and back",
         {rule(onControlChange(64, down, any, eatMatching), bend(0, 127)),
          rule(onControlChange(64, up, any, eatMatching), bend(0, 64))}},
        {"a registered parameter at load: bends of twelve semitones",
         {rule(onLoad(), send(controlChange(0, 101, 0))), rule(onLoad(), send(controlChange(0, 100, 0))),
          rule(onLoad(), send(controlChange(0, 6, 12)))}},
        {"a power chord: a run of keys and the fifths above, from the trigger",
         joined(keys(36, 36, PassThroughV2::PassThrough, true, 0, 7),
                keys(36, 36, PassThroughV2::PassThrough, false, 0, 7))},
    };
}

std::set<Kind> kindsOn(const Rules& rules) {
    std::set<Kind> kinds;
    for (const auto& advice : adviseOn(rules)) {
        kinds.insert(advice.kind);
    }
    return kinds;
}

std::string allAdvice(const Rules& rules) {
    std::string text;
    for (const auto& advice : adviseOn(rules)) {
        text += adviceText(rules, advice);
    }
    return text;
}

TEST(AdviceList, FindsTheMistakeInEachOfFortyPresets) {
    const auto presets = presetsWithAMistake();
    ASSERT_EQ(presets.size(), 40u);
    for (const auto& preset : presets) {
        EXPECT_TRUE(kindsOn(preset.rules).contains(preset.mistake)) << preset.story << "\n"
                                                                    << allAdvice(preset.rules);
    }
}

TEST(AdviceList, RaisesNoFalseAlarmOnTwentyPresetsThatAreRight) {
    const auto presets = presetsThatAreRight();
    ASSERT_EQ(presets.size(), 20u);
    for (const auto& preset : presets) {
        EXPECT_EQ(allAdvice(preset.rules), "") << preset.story;
    }
}

TEST(AdviceList, HasAPresetForEveryKindOfMistake) {
    std::set<Kind> kinds;
    for (const auto& preset : presetsWithAMistake()) {
        kinds.insert(preset.mistake);
    }
    EXPECT_EQ(kinds.size(), static_cast<std::size_t>(Kind::tearsMPE) + 1);
}

TEST(AdviceList, SpeaksOfARunAsOne) {
    auto rules = keys(12, 36, PassThroughV2::PassThrough, true, 1);
    rules.insert(rules.begin(), rule(onControlChange(7), volume));
    EXPECT_THAT(allAdvice(rules),
                testing::StartsWith("2-13. \"Left hand\", each like the first, starts a note "
                                    "that no rule ends: 36 (C1) on channel 2; only"));
    EXPECT_EQ(adviseOn(rules).size(), 1u);
}

}  // namespace
}  // namespace quillo
