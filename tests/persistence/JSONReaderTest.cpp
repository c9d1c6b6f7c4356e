// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/JSONReader.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "persistence/Documents.hpp"
#include "persistence/JSONWriter.hpp"
#include "persistence/RuleDescriptions.hpp"
#include "persistence/RuleV1Descriptions.hpp"

namespace quillo {
namespace {

template <class T>
T read(std::string_view text) {
    return JSONReader().read<T>(parseJSON(documents::bytesOf(text)), JSONPath());
}

template <class T>
std::string errorOf(std::string_view text) {
    try {
        static_cast<void>(read<T>(text));
    } catch (const DecodingError& error) {
        return error.what();
    }
    return "read without an error";
}

/// The value reads from the text, and its own text is the same.
template <class T>
void expectThereAndBack(const T& value, std::string_view text) {
    EXPECT_EQ(read<T>(text), value) << text;
    EXPECT_EQ(encode(value), text);
}

TEST(JSONReader, ReadsEveryByteThereAndBack) {
    for (int byte = 0; byte <= 255; ++byte) {
        const auto value = static_cast<std::uint8_t>(byte);
        expectThereAndBack<GenericByteV2>(GenericByteV2::Value{value},
                                          R"({"Value":{"_0":)" + std::to_string(byte) + "}}");
    }
}

TEST(JSONReader, RejectsNumbersThatAreNoByte) {
    EXPECT_EQ(errorOf<std::uint8_t>("256"), "expected a whole number from 0 to 255, found 256");
    EXPECT_EQ(errorOf<std::uint8_t>("300"), "expected a whole number from 0 to 255, found 300");
    EXPECT_EQ(errorOf<std::uint8_t>("-1"), "expected a whole number from 0 to 255, found -1");
    EXPECT_EQ(errorOf<std::uint8_t>("1.5"), "expected a whole number from 0 to 255, found 1.5");
    EXPECT_EQ(errorOf<std::uint8_t>("18446744073709551616"),
              "expected a whole number from 0 to 255, found 1.8446744073709552e+19");
    EXPECT_NE(errorOf<std::uint8_t>("255.0000000000000001").find("expected a whole number"),
              std::string::npos);
}

TEST(JSONReader, ReadsAWholeNumberHoweverItIsWritten) {
    EXPECT_EQ(read<std::uint8_t>("5.0"), 5);
    EXPECT_EQ(read<std::uint8_t>("1e1"), 10);
    EXPECT_EQ(read<std::uint8_t>("-0"), 0);
    EXPECT_EQ(read<std::uint8_t>("-0.0"), 0);
    EXPECT_EQ(read<std::uint8_t>("2.55e2"), 255);
}

TEST(JSONReader, TakesNothingElseForANumber) {
    constexpr auto expected = "expected a whole number from 0 to 255, found ";
    EXPECT_EQ(errorOf<std::uint8_t>("\"5\""), expected + std::string("a string"));
    EXPECT_EQ(errorOf<std::uint8_t>("true"), expected + std::string("true"));
    EXPECT_EQ(errorOf<std::uint8_t>("null"), expected + std::string("null"));
    EXPECT_EQ(errorOf<std::uint8_t>("[5]"), expected + std::string("an array"));
    EXPECT_EQ(errorOf<std::uint8_t>("{}"), expected + std::string("an object"));
}

TEST(JSONReader, ReadsDoublesAndBooleansStrictly) {
    EXPECT_EQ(read<double>("1.5"), 1.5);
    EXPECT_EQ(read<double>("-3"), -3.0);
    EXPECT_EQ(read<double>("18446744073709551616"), 18446744073709551616.0);
    EXPECT_EQ(errorOf<double>("\"1\""), "expected a number, found a string");
    EXPECT_EQ(errorOf<double>("null"), "expected a number, found null");
    EXPECT_EQ(read<bool>("true"), true);
    EXPECT_EQ(read<bool>("false"), false);
    EXPECT_EQ(errorOf<bool>("1"), "expected true or false, found 1");
}

TEST(JSONReader, ReadsDelaysOfTheWholeSigned64BitRange) {
    expectThereAndBack(DelayV2{INT64_MAX}, R"({"ms":9223372036854775807})");
    expectThereAndBack(DelayV2{INT64_MIN}, R"({"ms":-9223372036854775808})");
    expectThereAndBack(DelayV2{0}, R"({"ms":0})");
    EXPECT_EQ(read<DelayV2>(R"({"ms":2.5e3})"), DelayV2{2500});
}

TEST(JSONReader, RejectsDelaysBeyondTheSigned64BitRange) {
    constexpr auto expected = "ms: expected a whole number from -9223372036854775808 to "
                              "9223372036854775807, found ";
    EXPECT_EQ(errorOf<DelayV2>(R"({"ms":9223372036854775808})"),
              expected + std::string("9223372036854775808"));
    EXPECT_EQ(errorOf<DelayV2>(R"({"ms":-9223372036854775809})"),
              expected + std::string("-9.223372036854776e+18"));
    EXPECT_EQ(errorOf<DelayV2>(R"({"ms":0.5})"), expected + std::string("0.5"));
    EXPECT_EQ(errorOf<DelayV2>(R"({})"), "missing key \"ms\"");
}

TEST(JSONReader, ReadsAnOldPitchOf16Bits) {
    EXPECT_EQ(read<PitchV1>(R"({"value":65535})").value, 65535);
    EXPECT_EQ(errorOf<PitchV1>(R"({"value":65536})"),
              "value: expected a whole number from 0 to 65535, found 65536");
}

TEST(JSONReader, ReadsEveryStatusThereAndBack) {
    expectThereAndBack(StatusV2::noteOn, "144");
    expectThereAndBack(StatusV2::noteOff, "128");
    expectThereAndBack(StatusV2::CC, "176");
    expectThereAndBack(StatusV2::programChange, "192");
    expectThereAndBack(StatusV2::channelPressure, "208");
    expectThereAndBack(StatusV2::pitchWheel, "224");
    EXPECT_EQ(read<StatusV2>("1.44e2"), StatusV2::noteOn);
}

TEST(JSONReader, RejectsEveryOtherStatusNumber) {
    int refused = 0;
    for (int number = -1; number <= 256; ++number) {
        refused += errorOf<StatusV2>(std::to_string(number)) == "read without an error" ? 0 : 1;
    }
    EXPECT_EQ(refused, 258 - 6);
    EXPECT_EQ(errorOf<StatusV2>("145"), "expected one of 144, 128, 176, 192, 208, 224, found 145");
    EXPECT_EQ(errorOf<StatusV2>("144.5"), "expected one of 144, 128, 176, 192, 208, 224, found 144.5");
    EXPECT_EQ(errorOf<StatusV2>(R"({"noteOn":{}})"),
              "expected one of 144, 128, 176, 192, 208, 224, found an object");
}

TEST(JSONReader, ReadsEveryByteSourceAndChannelSourceThereAndBack) {
    expectThereAndBack<GenericByteV2>(GenericByteV2::RespectiveTriggerByte{},
                                      R"({"RespectiveTriggerByte":{}})");
    expectThereAndBack<RuleOutputChannelV2>(RuleOutputChannelV2::Value{9}, R"({"Value":{"_0":9}})");
    expectThereAndBack<RuleOutputChannelV2>(RuleOutputChannelV2::TriggerChannel{},
                                            R"({"TriggerChannel":{}})");
}

TEST(JSONReader, ReadsEveryStatusByteThereAndBack) {
    expectThereAndBack<StatusByteV2>(StatusByteV2::JustStatus{StatusV2::CC}, R"({"JustStatus":{"_0":176}})");
    expectThereAndBack<StatusByteV2>(
        StatusByteV2::WithChannel{StatusV2::pitchWheel, RuleOutputChannelV2::TriggerChannel{}},
        R"({"WithChannel":{"_0":224,"_1":{"TriggerChannel":{}}}})");
}

TEST(JSONReader, ReadsEveryOutputThereAndBack) {
    using Output = RuleOutputVariantsV2;
    const StatusByteV2 status = StatusByteV2::JustStatus{StatusV2::noteOn};
    expectThereAndBack<Output>(Output::Protocol{status, GenericByteV2::Value{60}, GenericByteV2::Value{100}},
                               R"({"Protocol":{"_0":{"JustStatus":{"_0":144}},"_1":{"Value":{"_0":60}},)"
                               R"("_2":{"Value":{"_0":100}}}})");
    expectThereAndBack<Output>(Output::Protocol{status, GenericByteV2::Value{60}, std::nullopt},
                               R"({"Protocol":{"_0":{"JustStatus":{"_0":144}},"_1":{"Value":{"_0":60}}}})");
    expectThereAndBack<Output>(
        Output::ProgramChange{RuleOutputChannelV2::Value{3}, 2, GenericByteV2::RespectiveTriggerByte{}},
        R"({"ProgramChange":{"_0":{"Value":{"_0":3}},"_1":2,"_2":{"RespectiveTriggerByte":{}}}})");
    expectThereAndBack<Output>(Output::SystemExclusive{{0, 127, 255}},
                               R"({"SystemExclusive":{"_0":[0,127,255]}})");
    expectThereAndBack<Output>(Output::SystemExclusive{{}}, R"({"SystemExclusive":{"_0":[]}})");
}

TEST(JSONReader, TakesANullForAnAbsentThirdByte) {
    using Output = RuleOutputVariantsV2;
    const Output withoutThirdByte =
        Output::Protocol{StatusByteV2::JustStatus{StatusV2::noteOn}, GenericByteV2::Value{60}, std::nullopt};
    EXPECT_EQ(
        read<Output>(R"({"Protocol":{"_0":{"JustStatus":{"_0":144}},"_1":{"Value":{"_0":60}},"_2":null}})"),
        withoutThirdByte);
}

TEST(JSONReader, TakesANullForNothingElse) {
    EXPECT_EQ(errorOf<RuleOutputVariantsV2>(R"({"Protocol":{"_0":{"JustStatus":{"_0":144}},"_1":null}})"),
              "Protocol._1: expected an object, found null");
    EXPECT_EQ(errorOf<RuleOutputVariantsV2>(R"({"SystemExclusive":{"_0":null}})"),
              "SystemExclusive: expected an array, found null");
}

TEST(JSONReader, ReadsEveryTriggerValueThereAndBack) {
    expectThereAndBack<TriggerValueV2>(TriggerValueV2::Value{127}, R"({"Value":{"_0":127}})");
    expectThereAndBack<TriggerValueV2>(TriggerValueV2::AnyValue{}, R"({"AnyValue":{}})");
}

TEST(JSONReader, ReadsEveryVoiceTriggerThereAndBack) {
    using Variants = VoiceCategoryTriggerVariantsV2;
    const TriggerValueV2 any = TriggerValueV2::AnyValue{};
    expectThereAndBack<Variants>(Variants::NoteOn{any}, R"({"NoteOn":{"_0":{"AnyValue":{}}}})");
    expectThereAndBack<Variants>(Variants::NoteOff{any}, R"({"NoteOff":{"_0":{"AnyValue":{}}}})");
    expectThereAndBack<Variants>(Variants::ControlChange{64, any},
                                 R"({"ControlChange":{"_0":64,"_1":{"AnyValue":{}}}})");
    expectThereAndBack<Variants>(Variants::ProgramChange{any}, R"({"ProgramChange":{"_0":{"AnyValue":{}}}})");
}

TEST(JSONReader, ReadsEveryMessageTriggerThereAndBack) {
    using Variants = MessageBasedTriggerVariantsV2;
    const VoiceCategoryTriggerV2 voice{VoiceCategoryTriggerVariantsV2::NoteOn{TriggerValueV2::Value{1}},
                                       TriggerValueV2::Value{2}};
    expectThereAndBack<Variants>(
        Variants::VoiceCategory{voice},
        R"({"VoiceCategory":{"_0":{"variants":{"NoteOn":{"_0":{"Value":{"_0":1}}}},"channel":{"Value":)"
        R"({"_0":2}}}}})");
    expectThereAndBack<Variants>(Variants::Start{}, R"({"Start":{}})");
    expectThereAndBack<Variants>(Variants::Stop{}, R"({"Stop":{}})");
    expectThereAndBack<Variants>(Variants::Continue{}, R"({"Continue":{}})");
}

TEST(JSONReader, ReadsEveryTransportChangeAndPolicyThereAndBack) {
    expectThereAndBack(HostTransportTriggerVariantsV2::Start, R"({"Start":{}})");
    expectThereAndBack(HostTransportTriggerVariantsV2::Continue, R"({"Continue":{}})");
    expectThereAndBack(HostTransportTriggerVariantsV2::Stop, R"({"Stop":{}})");
    expectThereAndBack(PassThroughV2::PassThrough, R"({"PassThrough":{}})");
    expectThereAndBack(PassThroughV2::EatMatching, R"({"EatMatching":{}})");
    expectThereAndBack(PassThroughV2::EatNonMatching, R"({"EatNonMatching":{}})");
}

TEST(JSONReader, ReadsEveryTriggerThereAndBack) {
    expectThereAndBack<RuleTriggerV2>(
        RuleTriggerV2::MessageBased{{MessageBasedTriggerVariantsV2::Stop{}, PassThroughV2::EatMatching}},
        R"({"MessageBased":{"_0":{"variants":{"Stop":{}},"passTrough":{"EatMatching":{}}}}})");
    expectThereAndBack<RuleTriggerV2>(
        RuleTriggerV2::HostTransport{
            {HostTransportTriggerVariantsV2::Continue, PassThroughV2::EatNonMatching}},
        R"({"HostTransport":{"_0":{"variants":{"Continue":{}},"passThrough":{"EatNonMatching":{}}}}})");
    expectThereAndBack<RuleTriggerV2>(RuleTriggerV2::OnLoad{}, R"({"OnLoad":{}})");
}

TEST(JSONReader, ReadsWholeRulesThereAndBack) {
    expectThereAndBack(documents::noteToControllerRule(), documents::noteToController);
    expectThereAndBack(documents::loadSoundRule(), documents::loadSound);
}

TEST(JSONReader, RejectsAnObjectWithoutAKnownCase) {
    EXPECT_EQ(errorOf<PassThroughV2>("{}"), "Invalid number of keys found, expected one. "
                                            R"(expected "PassThrough" or "EatMatching" or "EatNonMatching")");
    EXPECT_EQ(errorOf<TriggerValueV2>(R"({"value":{"_0":1},"anyValue":{}})"),
              R"(Invalid number of keys found, expected one. expected "Value" or "AnyValue")");
    EXPECT_EQ(errorOf<DelayV2>(R"({"MS":1})"), R"(missing key "ms")");
}

TEST(JSONReader, RejectsAnObjectWithTwoCases) {
    EXPECT_EQ(errorOf<TriggerValueV2>(R"({"AnyValue":{},"Value":{"_0":1}})"),
              R"(Invalid number of keys found, expected one. found "Value" and "AnyValue")");
    EXPECT_EQ(errorOf<MessageBasedTriggerV2>(
                  R"({"variants":{"Start":{},"Stop":null},"passTrough":{"PassThrough":{}}})"),
              R"(Invalid number of keys found, expected one. variants: found "Start" and "Stop")");
}

TEST(JSONReader, IgnoresKeysThatAreNoCase) {
    EXPECT_EQ(
        read<VoiceCategoryTriggerVariantsV2>(R"({"x":1,"NoteOn":{"_0":{"AnyValue":{}}},"noteOff":{}})"),
        VoiceCategoryTriggerVariantsV2(VoiceCategoryTriggerVariantsV2::NoteOn{TriggerValueV2::AnyValue{}}));
}

TEST(JSONReader, IgnoresKeysThatAreNoFieldOrPayload) {
    EXPECT_EQ(read<DelayV2>(R"({"unit":"ms","ms":3})"), DelayV2{3});
    EXPECT_EQ(read<TriggerValueV2>(R"({"Value":{"_1":300,"_0":3}})"),
              TriggerValueV2(TriggerValueV2::Value{3}));
    EXPECT_EQ(read<TriggerValueV2>(R"({"AnyValue":{"_0":3}})"), TriggerValueV2(TriggerValueV2::AnyValue{}));
}

TEST(JSONReader, RejectsACaseWithoutPayloadWhoseValueIsNoObject) {
    EXPECT_EQ(errorOf<RuleTriggerV2>(R"({"OnLoad":null})"), "OnLoad: expected an object, found null");
    EXPECT_EQ(errorOf<RuleTriggerV2>(R"({"OnLoad":5})"), "OnLoad: expected an object, found 5");
    EXPECT_EQ(errorOf<RuleTriggerV2>(R"({"OnLoad":[]})"), "OnLoad: expected an object, found an array");
    EXPECT_EQ(errorOf<PassThroughV2>(R"({"EatMatching":"yes"})"),
              "EatMatching: expected an object, found a string");
}

TEST(JSONReader, RejectsACaseThatIsNoObject) {
    EXPECT_EQ(errorOf<TriggerValueV2>("\"AnyValue\""), "expected an object, found a string");
    EXPECT_EQ(errorOf<PassThroughV2>("0"), "expected an object, found 0");
    EXPECT_EQ(errorOf<DelayV2>("250"), "expected an object, found 250");
}

TEST(JSONReader, LeavesTheKeyOfAnOnlyPayloadOutOfThePath) {
    EXPECT_EQ(errorOf<TriggerValueV2>(R"({"Value":{"_0":300}})"),
              "Value: expected a whole number from 0 to 255, found 300");
    EXPECT_EQ(errorOf<TriggerValueV2>(R"({"Value":{}})"), R"(Value: missing key "_0")");
}

TEST(JSONReader, NamesTheElementOfALargerPayload) {
    EXPECT_EQ(
        errorOf<VoiceCategoryTriggerVariantsV2>(R"({"ControlChange":{"_0":1,"_1":{"Value":{"_0":-1}}}})"),
        "ControlChange._1.Value: expected a whole number from 0 to 255, "
        "found -1");
    EXPECT_EQ(errorOf<VoiceCategoryTriggerVariantsV2>(R"({"ControlChange":{"_0":1}})"),
              R"(ControlChange: missing key "_1")");
}

TEST(JSONReader, NamesTheElementOfAList) {
    EXPECT_EQ(errorOf<RuleOutputVariantsV2>(R"({"SystemExclusive":{"_0":[1,2,256]}})"),
              "SystemExclusive[2]: expected a whole number from 0 to 255, found 256");
    EXPECT_EQ(errorOf<std::vector<PassThroughV2>>(R"([{"EatMatching":{}},{"EatMatching":1}])"),
              "[1].EatMatching: expected an object, found 1");
}

TEST(JSONReader, TakesNothingButATextForAText) {
    EXPECT_EQ(errorOf<std::string>("5"), "expected a string, found 5");
    EXPECT_EQ(errorOf<std::vector<std::string>>(R"(["5",null])"), "[1]: expected a string, found null");
}

TEST(JSONReader, StartsAnErrorAtTheNameThatItIsGiven) {
    const auto value = parseJSON(documents::bytesOf("[{}]"));
    try {
        static_cast<void>(JSONReader().read<std::vector<Rule>>(value, {JSONPath(), "rules"}));
        FAIL();
    } catch (const DecodingError& error) {
        EXPECT_STREQ(error.what(), R"(rules[0]: missing key "output")");
    }
}

}  // namespace
}  // namespace quillo
