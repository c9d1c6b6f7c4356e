// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "persistence/DecodingError.hpp"
#include "persistence/PluginData.hpp"

/// Documents of every form, as they lie in users' projects, and short ways to read them.
namespace quillo::documents {

inline std::span<const std::uint8_t> bytesOf(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

inline PluginData read(std::string_view text) {
    return PluginData::read(bytesOf(text));
}

inline std::string written(const PluginData& data) {
    const auto bytes = data.write();
    return {bytes.begin(), bytes.end()};
}

/// The error that reading throws. A document that reads after all gives a text that no error has.
inline std::string errorOf(std::string_view text) {
    try {
        static_cast<void>(read(text));
    } catch (const DecodingError& error) {
        return error.what();
    }
    return "read without an error";
}

/// A controller 7 that follows every note-on, 250 ms later.
inline constexpr std::string_view noteToController =
    R"({"output":{"message":{"Protocol":{"_0":{"WithChannel":{"_0":176,"_1":{"TriggerChannel":{}}}},)"
    R"("_1":{"Value":{"_0":7}},"_2":{"RespectiveTriggerByte":{}}}},"delay":{"ms":250}},)"
    R"("trigger":{"MessageBased":{"_0":{"variants":{"VoiceCategory":{"_0":{"variants":)"
    R"({"NoteOn":{"_0":{"AnyValue":{}}}},"channel":{"AnyValue":{}}}}},"passTrough":{"PassThrough":{}}}}},)"
    R"("name":"Note to CC"})";

/// A program 5 of bank 0 when the plug-in loads.
inline constexpr std::string_view loadSound =
    R"({"output":{"message":{"ProgramChange":{"_0":{"Value":{"_0":0}},"_1":0,"_2":{"Value":{"_0":5}}}},)"
    R"("delay":{"ms":0}},"trigger":{"OnLoad":{}},"name":"Load sound"})";

inline std::string currentDocument() {
    return R"({"rules":[)" + std::string(noteToController) + "," + std::string(loadSound) + "]}";
}

inline Rule noteToControllerRule() {
    using Output = RuleOutputVariantsV2;
    return {
        {Output::Protocol{StatusByteV2::WithChannel{StatusV2::CC, RuleOutputChannelV2::TriggerChannel{}},
                          GenericByteV2::Value{7}, GenericByteV2::RespectiveTriggerByte{}},
         DelayV2{250}},
        RuleTriggerV2::MessageBased{{MessageBasedTriggerVariantsV2::VoiceCategory{
                                         {VoiceCategoryTriggerVariantsV2::NoteOn{TriggerValueV2::AnyValue{}},
                                          TriggerValueV2::AnyValue{}}},
                                     PassThroughV2::PassThrough}},
        "Note to CC"};
}

/// The same rules, and three others that are switched off: one before them, two behind them.
inline std::string documentWithShelf() {
    const auto shelved = [](int place, std::string rule, std::string_view name) {
        const std::string_view old = "Load sound";
        rule.replace(rule.find(old), old.size(), name);
        return R"({"place":)" + std::to_string(place) + R"(,"rule":)" + rule + "}";
    };
    const std::string rule(loadSound);
    return R"({"rules":[)" + std::string(noteToController) + "," + rule + R"(],"shelf":[)" +
           shelved(0, rule, "first") + "," + shelved(2, rule, "last") + "," +
           shelved(2, rule, "behind the last") + "]}";
}

inline Rule loadSoundRule() {
    return {{RuleOutputVariantsV2::ProgramChange{RuleOutputChannelV2::Value{0}, 0, GenericByteV2::Value{5}},
             DelayV2{0}},
            RuleTriggerV2::OnLoad{},
            "Load sound"};
}

inline PluginData dataWithShelf() {
    const auto named = [](std::string name) {
        auto rule = loadSoundRule();
        rule.name = std::move(name);
        return rule;
    };
    return {{noteToControllerRule(), loadSoundRule()},
            {{0, named("first")}, {2, named("last")}, {2, named("behind the last")}}};
}

/// Three nameless rules of the second form.
inline constexpr std::string_view bareArrayV2 = R"([
  {"output": {"message": {"SystemExclusive": {"_0": [126, 127, 9, 1]}}, "delay": {"ms": 0}},
   "trigger": {"OnLoad": {}}},
  {"output": {"message": {"Protocol": {"_0": {"JustStatus": {"_0": 208}}, "_1": {"Value": {"_0": 64}}}},
              "delay": {"ms": 5}},
   "trigger": {"HostTransport": {"_0": {"variants": {"Stop": {}}, "passThrough": {"EatMatching": {}}}}}},
  {"output": {"message": {"ProgramChange": {"_0": {"TriggerChannel": {}}, "_1": 2,
                                            "_2": {"RespectiveTriggerByte": {}}}},
              "delay": {"ms": 1000}},
   "trigger": {"MessageBased": {"_0": {"variants": {"VoiceCategory": {"_0": {
       "variants": {"ProgramChange": {"_0": {"Value": {"_0": 3}}}}, "channel": {"Value": {"_0": 15}}}}},
     "passTrough": {"EatNonMatching": {}}}}}}
])";

/// A rule of the oldest form: note-on 60 on channel value 1, consumed, sends note-on 60 on channel value 2.
inline constexpr std::string_view noteRuleV1 = R"(
  {"output": {"message": {"Prime": {"_0": {"NoteOn": {"_0": {"value": 2}, "_1": {"value": 60},
                                                      "_2": {"value": 100}}}}},
              "delay": {"ms": 10}},
   "trigger": {"MessageBased": {"_0": {
       "variants": {"VoiceCategory": {"_0": {"variants": {"NoteOn": {"_0": {"Note": {"_0": {"value": 60}}}}},
                                             "channel": {"Channel": {"_0": 1}}}}},
       "passTrough": {"EatMatching": {}}}}}})";

inline Rule noteRuleV1Migrated(std::string name) {
    return {
        {RuleOutputVariantsV2::Protocol{
             StatusByteV2::WithChannel{StatusV2::noteOn, RuleOutputChannelV2::Value{2}},
             GenericByteV2::Value{60}, GenericByteV2::Value{100}},
         DelayV2{10}},
        RuleTriggerV2::MessageBased{{MessageBasedTriggerVariantsV2::VoiceCategory{
                                         {VoiceCategoryTriggerVariantsV2::NoteOn{TriggerValueV2::Value{60}},
                                          TriggerValueV2::Value{1}}},
                                     PassThroughV2::EatMatching}},
        std::move(name)};
}

}  // namespace quillo::documents
