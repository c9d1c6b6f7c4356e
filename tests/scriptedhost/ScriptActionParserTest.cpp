// SPDX-License-Identifier: GPL-3.0-or-later
#include "scriptedhost/ScriptAction.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "persistence/DecodingError.hpp"

namespace quillo {
namespace {

template <class Action>
Action parse(std::string_view line) {
    return std::get<Action>(parseScriptAction(line));
}

std::string errorOf(std::string_view line) {
    try {
        static_cast<void>(parseScriptAction(line));
    } catch (const DecodingError& error) {
        return error.what();
    }
    return "parsed without an error";
}

std::string renderWith(std::string_view event) {
    return R"({"do":"render","sampleTime":0,"frames":0,"events":[)" + std::string(event) + "]}";
}

AUMIDIEvent parseMIDIEvent(std::string_view event) {
    return std::get<AUMIDIEvent>(parse<script::Render>(renderWith(event)).events.at(0));
}

TEST(ScriptActionParser, RejectsWhatIsNoAction) {
    EXPECT_EQ(errorOf("create"), "not JSON: column 1: invalid literal");
    EXPECT_EQ(errorOf(R"({"do":"create")"), "not JSON: column 15: unexpected end of input");
    EXPECT_EQ(errorOf(R"({"do":"create"}{})"), "not JSON: column 16: unexpected '{'");
    EXPECT_EQ(errorOf("[]"), "expected an object, found an array");
    EXPECT_EQ(errorOf("{}"), R"(missing key "do")");
    EXPECT_EQ(errorOf(R"({"do":1})"), "do: expected a string, found 1");
    EXPECT_EQ(errorOf(R"({"do":"Create"})"), R"(do: there is no action "Create")");
    EXPECT_EQ(errorOf(R"({"do":"a\"\n"})"), R"(do: there is no action "a\"\n")");
    EXPECT_EQ(errorOf("{\"do\":\"\xFF\"}"), "not JSON: column 8: invalid string: ill-formed UTF-8 byte");
    EXPECT_EQ(errorOf(R"({"do":"queue","x":1e999})"),
              "not JSON: column 23: a number beyond the range of a double");
}

TEST(ScriptActionParser, IgnoresKeysThatAnActionDoesNotKnow) {
    EXPECT_NO_THROW(parse<script::Create>(R"({"comment":"start","do":"create","state":5})"));
    EXPECT_NO_THROW(parse<script::Queue>(R"({"do":"queue","events":[]})"));
}

TEST(ScriptActionParser, ReadsAStateAsTheBytesOfItsText) {
    const auto state = parse<script::Restore>(R"({"do":"restore","state":"é\u0000\/"})").state;
    EXPECT_EQ(state, (StateDictionary{{"midi-quillo-state", Data{0xC3, 0xA9, 0x00, '/'}}}));
    EXPECT_EQ(parse<script::Restore>(R"({"do":"restore","state":""})").state,
              (StateDictionary{{"midi-quillo-state", Data()}}));
}

TEST(ScriptActionParser, ReadsABase64StateAsItsBytes) {
    EXPECT_EQ(parse<script::Restore>(R"({"do":"restore","base64":"/wA="})").state,
              (StateDictionary{{"midi-quillo-state", Data{0xFF, 0x00}}}));
    EXPECT_EQ(errorOf(R"({"do":"restore","base64":"/wA"})"), "base64: not Base64");
    EXPECT_EQ(errorOf(R"({"do":"restore","base64":null})"), "base64: expected a string, found null");
}

TEST(ScriptActionParser, ReadsANullStateAsAnAbsentDictionary) {
    EXPECT_EQ(parse<script::Restore>(R"({"do":"restore","state":null})").state, std::nullopt);
    EXPECT_EQ(errorOf(R"({"do":"restore","state":{}})"), "state: expected a string or null, found an object");
}

TEST(ScriptActionParser, ReadsADictionaryWithoutDataValues) {
    EXPECT_EQ(
        parse<script::Restore>(
            R"({"do":"restore","dictionary":{"midi-quillo-state":"[]","a":1,"b":0.5,"c":-3}})")
            .state,
        (StateDictionary{{"midi-quillo-state", std::string("[]")}, {"a", 1.0}, {"b", 0.5}, {"c", -3.0}}));
    EXPECT_EQ(parse<script::Restore>(R"({"do":"restore","dictionary":{}})").state, StateDictionary());
    EXPECT_EQ(parse<script::Restore>(
                  R"({"do":"restore","dictionary":{"a":null,"b":true,"c":false,"d":{"e":1},"f":["g"]}})")
                  .state,
              (StateDictionary{{"a", std::monostate()},
                               {"b", std::monostate()},
                               {"c", std::monostate()},
                               {"d", std::monostate()},
                               {"f", std::monostate()}}));
    EXPECT_EQ(errorOf(R"({"do":"restore","dictionary":null})"), "dictionary: expected an object, found null");
}

TEST(ScriptActionParser, WantsExactlyOneStateToRestore) {
    constexpr auto expected = R"(expected one of "state", "base64" and "dictionary")";
    EXPECT_EQ(errorOf(R"({"do":"restore"})"), expected);
    EXPECT_EQ(errorOf(R"({"do":"restore","state":null,"dictionary":{}})"), expected);
    EXPECT_EQ(errorOf(R"({"do":"restore","state":"[]","base64":""})"), expected);
}

TEST(ScriptActionParser, ReadsFormatsWithTheirDefaults) {
    const auto defaults = parse<script::Allocate>(R"({"do":"allocate"})");
    EXPECT_EQ(defaults.sampleRate, 44100.0);
    EXPECT_EQ(defaults.inputChannels, 2U);
    EXPECT_EQ(defaults.outputChannels, 2U);
    const auto given = parse<script::Allocate>(
        R"({"do":"allocate","sampleRate":-0.5,"inputChannels":8.0,"outputChannels":0})");
    EXPECT_EQ(given.sampleRate, -0.5);
    EXPECT_EQ(given.inputChannels, 8U);
    EXPECT_EQ(given.outputChannels, 0U);
}

TEST(ScriptActionParser, RejectsInvalidFormats) {
    EXPECT_EQ(errorOf(R"({"do":"allocate","sampleRate":"48000"})"),
              "sampleRate: expected a number, found a string");
    EXPECT_EQ(errorOf(R"({"do":"allocate","sampleRate":null})"), "sampleRate: expected a number, found null");
    EXPECT_EQ(errorOf(R"({"do":"allocate","inputChannels":-1})"),
              "inputChannels: expected a whole number from 0 to 4294967295, found -1");
    EXPECT_EQ(errorOf(R"({"do":"allocate","outputChannels":1.5})"),
              "outputChannels: expected a whole number from 0 to 4294967295, found 1.5");
}

TEST(ScriptActionParser, SaysWhereARuleIsWrong) {
    EXPECT_EQ(errorOf(R"({"do":"install"})"), R"(missing key "rules")");
    EXPECT_EQ(errorOf(R"({"do":"install","rules":{}})"), "rules: expected an array, found an object");
    EXPECT_EQ(errorOf(R"({"do":"install","rules":[{"output":{"message":{},"delay":{"ms":0}}}]})"),
              "Invalid number of keys found, expected one. "
              R"(rules[0].output.message: expected "Protocol" or "ProgramChange" or "SystemExclusive")");
}

TEST(ScriptActionParser, SaysWhereAnOutputIsWrong) {
    EXPECT_EQ(errorOf(R"({"do":"send"})"), R"(missing key "output")");
    EXPECT_EQ(errorOf(R"({"do":"send","output":{"SystemExclusive":{"_0":[300]}}})"),
              "output.SystemExclusive[0]: expected a whole number from 0 to 255, found 300");
}

TEST(ScriptActionParser, ReadsTheWholeRangeOfTransportFlags) {
    const auto action =
        parse<script::Transport>(R"({"do":"transport","flags":18446744073709551615,"position":-1.5})");
    ASSERT_TRUE(action.state);
    EXPECT_EQ(action.state->flags, UINT64_MAX);
    EXPECT_EQ(action.state->position, -1.5);
}

TEST(ScriptActionParser, WantsFlagsAndPositionOfAPresentTransport) {
    EXPECT_EQ(errorOf(R"({"do":"transport"})"), R"(missing key "flags")");
    EXPECT_EQ(errorOf(R"({"do":"transport","present":true,"flags":2})"), R"(missing key "position")");
    EXPECT_EQ(errorOf(R"({"do":"transport","flags":-1,"position":0})"),
              "flags: expected a whole number from 0 to 18446744073709551615, found -1");
    EXPECT_EQ(errorOf(R"({"do":"transport","present":0})"), "present: expected true or false, found 0");
    EXPECT_FALSE(parse<script::Transport>(R"({"do":"transport","present":false})").state);
}

TEST(ScriptActionParser, ReadsAPlannedFailureOfTheOutput) {
    const auto action = parse<script::Output>(R"({"do":"output","failAfter":2,"status":-2147483648})");
    EXPECT_TRUE(action.present);
    ASSERT_TRUE(action.failure);
    EXPECT_EQ(action.failure->failAfter, 2U);
    EXPECT_EQ(action.failure->status, INT32_MIN);
    EXPECT_TRUE(parse<script::Output>(R"({"do":"output","present":true,"failAfter":0,"status":1})").failure);
}

TEST(ScriptActionParser, RejectsAnOutputThatSaysTooLittleOrTooMuch) {
    EXPECT_EQ(errorOf(R"({"do":"output"})"), R"(missing key "present")");
    EXPECT_EQ(errorOf(R"({"do":"output","present":"no"})"),
              "present: expected true or false, found a string");
    EXPECT_EQ(errorOf(R"({"do":"output","failAfter":1})"), R"(missing key "status")");
    EXPECT_EQ(errorOf(R"({"do":"output","status":1})"), R"(missing key "failAfter")");
    EXPECT_EQ(errorOf(R"({"do":"output","failAfter":1,"status":2147483648})"),
              "status: expected a whole number from -2147483648 to 2147483647, found 2147483648");
    EXPECT_EQ(errorOf(R"({"do":"output","present":false,"failAfter":1,"status":1})"),
              "an output block that is not present cannot fail");
}

TEST(ScriptActionParser, ReadsACycle) {
    const auto action = parse<script::Render>(R"({"do":"render","sampleTime":-0.5,"frames":4294967295})");
    EXPECT_EQ(action.sampleTime, -0.5);
    EXPECT_EQ(action.frames, UINT32_MAX);
    EXPECT_TRUE(action.events.empty());
}

TEST(ScriptActionParser, RejectsAnInvalidCycle) {
    EXPECT_EQ(errorOf(R"({"do":"render","frames":1})"), R"(missing key "sampleTime")");
    EXPECT_EQ(errorOf(R"({"do":"render","sampleTime":0})"), R"(missing key "frames")");
    EXPECT_EQ(errorOf(R"({"do":"render","sampleTime":"0","frames":1})"),
              "sampleTime: expected a number, found a string");
    EXPECT_EQ(errorOf(R"({"do":"render","sampleTime":0,"frames":4294967296})"),
              "frames: expected a whole number from 0 to 4294967295, found 4294967296");
    EXPECT_EQ(errorOf(R"({"do":"render","sampleTime":0,"frames":1,"events":null})"),
              "events: expected an array, found null");
    EXPECT_EQ(errorOf(renderWith("7")), "events[0]: expected an object, found 7");
}

TEST(ScriptActionParser, ReadsAMIDIEventWithTheRestOfItsDataZero) {
    const auto two = parseMIDIEvent(R"({"time":-9223372036854775808,"bytes":[192,5]})");
    EXPECT_EQ(two.eventType, AURenderEventType::midi);
    EXPECT_EQ(two.eventSampleTime, INT64_MIN);
    EXPECT_EQ(two.length, 2);
    EXPECT_EQ(two.data, (std::array<std::uint8_t, 3>{192, 5, 0}));
    EXPECT_EQ(two.cable, 0);
    const auto none = parseMIDIEvent(R"({"time":1e3,"bytes":[],"type":8})");
    EXPECT_EQ(none.eventSampleTime, 1000);
    EXPECT_EQ(none.length, 0);
}

TEST(ScriptActionParser, ReadsALengthOfItsOwn) {
    EXPECT_EQ(parseMIDIEvent(R"({"time":0,"bytes":[144,60,100],"length":1})").length, 1);
    EXPECT_EQ(parseMIDIEvent(R"({"time":0,"bytes":[144],"length":3})").length, 3);
    EXPECT_EQ(parseMIDIEvent(R"({"time":0,"bytes":[144],"length":0.0})").length, 0);
}

TEST(ScriptActionParser, RejectsAnInvalidMIDIEvent) {
    EXPECT_EQ(errorOf(renderWith(R"({"bytes":[]})")), R"(events[0]: missing key "time")");
    EXPECT_EQ(errorOf(renderWith(R"({"time":0})")), R"(events[0]: missing key "bytes")");
    EXPECT_EQ(errorOf(renderWith(R"({"time":0.5,"bytes":[]})")),
              "events[0].time: expected a whole number from -9223372036854775808 to 9223372036854775807, "
              "found 0.5");
    EXPECT_EQ(errorOf(renderWith(R"({"time":0,"bytes":[1,2,3,4]})")),
              "events[0].bytes: a MIDI event has no more than three bytes");
    EXPECT_EQ(errorOf(renderWith(R"({"time":0,"bytes":[256]})")),
              "events[0].bytes[0]: expected a whole number from 0 to 255, found 256");
    EXPECT_EQ(errorOf(renderWith(R"({"time":0,"bytes":[],"length":4})")),
              "events[0].length: a MIDI event's length is 0 to 3");
    EXPECT_EQ(errorOf(renderWith(R"({"time":0,"bytes":[],"length":null})")),
              "events[0].length: expected a whole number from 0 to 65535, found null");
}

TEST(ScriptActionParser, ReadsASystemExclusiveEventOfAnyLength) {
    const auto events =
        parse<script::Render>(renderWith(R"({"time":3,"type":9,"bytes":[240,1,2,3,4,247]})")).events;
    const auto& event = std::get<script::SysExEvent>(events.at(0));
    EXPECT_EQ(event.time, 3);
    EXPECT_EQ(event.bytes, (std::vector<std::uint8_t>{240, 1, 2, 3, 4, 247}));
    EXPECT_EQ(errorOf(renderWith(R"({"time":3,"type":9})")), R"(events[0]: missing key "bytes")");
}

TEST(ScriptActionParser, ReadsParameterEventsWithOrWithoutBytes) {
    const auto events =
        parse<script::Render>(renderWith(R"({"time":3,"type":1},{"time":4,"type":2.0,"bytes":[1,2,3,4]})"))
            .events;
    EXPECT_EQ(std::get<AURenderEvent>(events.at(0)).eventType, AURenderEventType::parameter);
    EXPECT_EQ(std::get<AURenderEvent>(events.at(1)).eventType, AURenderEventType::parameterRamp);
    EXPECT_EQ(std::get<AURenderEvent>(events.at(1)).eventSampleTime, 4);
}

TEST(ScriptActionParser, RejectsOtherEventTypes) {
    for (const auto* type : {"0", "3", "7", "10", "255"}) {
        EXPECT_EQ(errorOf(renderWith(R"({"time":0,"bytes":[],"type":)" + std::string(type) + "}")),
                  "events[0].type: expected 1, 2, 8 or 9, found " + std::string(type));
    }
    EXPECT_EQ(errorOf(renderWith(R"({"time":0,"bytes":[],"type":"midi"})")),
              "events[0].type: expected a whole number from 0 to 255, found a string");
}

TEST(ScriptActionParser, ReadsViewSizes) {
    const auto sizes = parse<script::Views>(R"({"do":"views","sizes":[[150,300.5],[0,0]]})").sizes;
    EXPECT_EQ(sizes, (std::vector<AUAudioUnitViewConfiguration>{{150.0, 300.5}, {0.0, 0.0}}));
    EXPECT_TRUE(parse<script::Views>(R"({"do":"views","sizes":[]})").sizes.empty());
}

TEST(ScriptActionParser, RejectsInvalidViewSizes) {
    EXPECT_EQ(errorOf(R"({"do":"views"})"), R"(missing key "sizes")");
    EXPECT_EQ(errorOf(R"({"do":"views","sizes":[[1,2],[1,2,3]]})"),
              "sizes[1]: a size is a width and a height");
    EXPECT_EQ(errorOf(R"({"do":"views","sizes":[[1,"2"]]})"),
              "sizes[0][1]: expected a number, found a string");
    EXPECT_EQ(errorOf(R"({"do":"views","sizes":[200,200]})"), "sizes[0]: expected an array, found 200");
}

}  // namespace
}  // namespace quillo
