// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/RuleV2.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "persistence/Documents.hpp"
#include "platform/FatalError.hpp"

namespace quillo {
namespace {

using Output = RuleOutputVariantsV2;
using Byte = GenericByteV2::Value;

/// Reads an old rule that sends `message` when the plug-in loads.
Output migratedOutput(const std::string& message) {
    return documents::read(R"([{"output":{"message":)" + message +
                           R"(,"delay":{"ms":0}},"trigger":{"OnLoad":{}}}])")
        .rules.at(0)
        .output.message;
}

Output migratedPrime(const std::string& message) {
    return migratedOutput(R"({"Prime":{"_0":)" + message + "}}");
}

/// Reads an old rule with this trigger.
RuleTriggerV2 migratedTrigger(const std::string& trigger) {
    return documents::read(R"([{"output":{"message":{"Prime":{"_0":{"SystemExclusive":{"_0":[]}}}},)"
                           R"("delay":{"ms":0}},"trigger":)" +
                           trigger + "}]")
        .rules.at(0)
        .trigger;
}

RuleTriggerV2 migratedMessageTrigger(const std::string& variants) {
    return migratedTrigger(R"({"MessageBased":{"_0":{"variants":)" + variants +
                           R"(,"passTrough":{"PassThrough":{}}}}})");
}

VoiceCategoryTriggerV2 migratedVoice(const std::string& variants, const std::string& channel) {
    const auto trigger = migratedMessageTrigger(R"({"VoiceCategory":{"_0":{"variants":)" + variants +
                                                R"(,"channel":)" + channel + "}}}");
    return trigger.getIf<RuleTriggerV2::MessageBased>()
        ->trigger.variants.getIf<MessageBasedTriggerVariantsV2::VoiceCategory>()
        ->voice;
}

Output protocol(StatusV2 status, std::uint8_t channel, std::uint8_t byte1, std::uint8_t byte2) {
    return Output::Protocol{StatusByteV2::WithChannel{status, RuleOutputChannelV2::Value{channel}},
                            Byte{byte1}, Byte{byte2}};
}

Output protocol(StatusV2 status, std::uint8_t channel, std::uint8_t byte1) {
    return Output::Protocol{StatusByteV2::WithChannel{status, RuleOutputChannelV2::Value{channel}},
                            Byte{byte1}, std::nullopt};
}

std::string pitchWheel(int pitch) {
    return R"({"PitchWheel":{"_0":{"value":4},"_1":{"value":)" + std::to_string(pitch) + "}}}";
}

TEST(RuleV1Migration, CarriesThreeByteMessagesOver) {
    EXPECT_EQ(migratedPrime(R"({"NoteOff":{"_0":{"value":1},"_1":{"value":60},"_2":{"value":64}}})"),
              protocol(StatusV2::noteOff, 1, 60, 64));
    EXPECT_EQ(migratedPrime(R"({"NoteOn":{"_0":{"value":2},"_1":{"value":61},"_2":{"value":0}}})"),
              protocol(StatusV2::noteOn, 2, 61, 0));
    EXPECT_EQ(migratedPrime(R"({"ControlChange":{"_0":{"value":255},"_1":{"value":7},"_2":{"value":200}}})"),
              protocol(StatusV2::CC, 255, 7, 200));
}

TEST(RuleV1Migration, CarriesTwoByteMessagesOverWithoutAThirdByte) {
    EXPECT_EQ(migratedPrime(R"({"ProgramChange":{"_0":{"value":3},"_1":{"value":5}}})"),
              protocol(StatusV2::programChange, 3, 5));
    EXPECT_EQ(migratedPrime(R"({"ChannelPressure":{"_0":{"value":4},"_1":{"value":99}}})"),
              protocol(StatusV2::channelPressure, 4, 99));
}

TEST(RuleV1Migration, MakesABankedProgramChangeOfTheShortcutOnly) {
    EXPECT_EQ(
        migratedOutput(
            R"({"Shortcut":{"_0":{"ProgramChange":{"_0":{"value":9},"_1":{"value":2},"_2":{"value":17}}}}})"),
        Output(Output::ProgramChange{RuleOutputChannelV2::Value{9}, 2, Byte{17}}));
}

TEST(RuleV1Migration, CarriesASystemExclusiveBodyOver) {
    EXPECT_EQ(migratedPrime(R"({"SystemExclusive":{"_0":[125,0,255]}})"),
              Output(Output::SystemExclusive{{125, 0, 255}}));
}

TEST(RuleV1Migration, SplitsAPitchInItsLowSevenBitsAndOneHighBit) {
    for (int pitch = 0; pitch <= 255; ++pitch) {
        EXPECT_EQ(migratedPrime(pitchWheel(pitch)),
                  protocol(StatusV2::pitchWheel, 4, static_cast<std::uint8_t>(pitch % 128),
                           static_cast<std::uint8_t>(pitch / 128)));
    }
    EXPECT_EQ(migratedPrime(pitchWheel(200)), protocol(StatusV2::pitchWheel, 4, 72, 1));
}

TEST(RuleV1Migration, StopsAtAPitchAbove255) {
    for (const int pitch : {256, 8192, 16383, 65535}) {
        EXPECT_THROW(migratedPrime(pitchWheel(pitch)), FatalError) << pitch;
    }
}

TEST(RuleV1Migration, SaysWhichPitchItStopsAt) {
    try {
        migratedPrime(pitchWheel(8192));
        FAIL();
    } catch (const FatalError& error) {
        EXPECT_TRUE(
            std::string(error.what()).starts_with("Fatal error: pitch 8192 of a V1 rule is above 255 ("))
            << error.what();
    }
}

TEST(RuleV1Migration, CarriesTheDelayOver) {
    const auto delayOf = [](const std::string& ms) {
        return documents::read(R"([{"output":{"message":{"Prime":{"_0":{"SystemExclusive":{"_0":[]}}}},)"
                               R"("delay":{"ms":)" +
                               ms + R"(}},"trigger":{"OnLoad":{}}}])")
            .rules.at(0)
            .output.delay;
    };
    EXPECT_EQ(delayOf("250"), DelayV2{250});
    EXPECT_EQ(delayOf("-1"), DelayV2{-1});
    EXPECT_EQ(delayOf("9223372036854775807"), DelayV2{INT64_MAX});
}

TEST(RuleV1Migration, KeepsARuleThatFiresOnLoad) {
    const auto rules =
        documents::read(R"([{"output":{"message":{"Prime":{"_0":{"ProgramChange":{"_0":{"value":1},)"
                        R"("_1":{"value":2}}}}},"delay":{"ms":3}},"trigger":{"OnLoad":{}}}])")
            .rules;
    const Rule expected{
        {protocol(StatusV2::programChange, 1, 2), DelayV2{3}}, RuleTriggerV2::OnLoad{}, "Message #1"};
    EXPECT_EQ(rules.at(0), expected);
}

TEST(RuleV1Migration, CarriesSystemMessageTriggersOver) {
    const auto messageBased = [](const MessageBasedTriggerVariantsV2& variants) -> RuleTriggerV2 {
        return RuleTriggerV2::MessageBased{{variants, PassThroughV2::PassThrough}};
    };
    EXPECT_EQ(migratedMessageTrigger(R"({"Start":{}})"),
              messageBased(MessageBasedTriggerVariantsV2::Start{}));
    EXPECT_EQ(migratedMessageTrigger(R"({"Stop":{}})"), messageBased(MessageBasedTriggerVariantsV2::Stop{}));
    EXPECT_EQ(migratedMessageTrigger(R"({"Continue":{}})"),
              messageBased(MessageBasedTriggerVariantsV2::Continue{}));
}

TEST(RuleV1Migration, CarriesVoiceTriggersOver) {
    using Variants = VoiceCategoryTriggerVariantsV2;
    const TriggerValueV2 any = TriggerValueV2::AnyValue{};
    const TriggerValueV2 sixty = TriggerValueV2::Value{60};
    const auto variantsOf = [](const std::string& text) {
        return migratedVoice(text, R"({"AnyChannel":{}})").variants;
    };
    EXPECT_EQ(variantsOf(R"({"NoteOn":{"_0":{"Note":{"_0":{"value":60}}}}})"),
              Variants(Variants::NoteOn{sixty}));
    EXPECT_EQ(variantsOf(R"({"NoteOn":{"_0":{"AnyNote":{}}}})"), Variants(Variants::NoteOn{any}));
    EXPECT_EQ(variantsOf(R"({"NoteOff":{"_0":{"Note":{"_0":{"value":60}}}}})"),
              Variants(Variants::NoteOff{sixty}));
    EXPECT_EQ(variantsOf(R"({"NoteOff":{"_0":{"AnyNote":{}}}})"), Variants(Variants::NoteOff{any}));
    EXPECT_EQ(variantsOf(R"({"ControlChange":{"_0":{"value":7},"_1":{"Value":{"_0":{"value":60}}}}})"),
              Variants(Variants::ControlChange{7, sixty}));
    EXPECT_EQ(variantsOf(R"({"ControlChange":{"_0":{"value":7},"_1":{"AnyValue":{}}}})"),
              Variants(Variants::ControlChange{7, any}));
}

TEST(RuleV1Migration, CarriesTriggerChannelsOver) {
    const auto channelOf = [](const std::string& text) {
        return migratedVoice(R"({"NoteOn":{"_0":{"AnyNote":{}}}})", text).channel;
    };
    EXPECT_EQ(channelOf(R"({"Channel":{"_0":15}})"), TriggerValueV2(TriggerValueV2::Value{15}));
    EXPECT_EQ(channelOf(R"({"AnyChannel":{}})"), TriggerValueV2(TriggerValueV2::AnyValue{}));
}

TEST(RuleV1Migration, CarriesEveryPassThroughPolicyOver) {
    const auto policyOf = [](const std::string& policy) {
        const auto trigger = migratedTrigger(
            R"({"MessageBased":{"_0":{"variants":{"Start":{}},"passTrough":{")" + policy + R"(":{}}}}})");
        return trigger.getIf<RuleTriggerV2::MessageBased>()->trigger.passTrough;
    };
    EXPECT_EQ(policyOf("PassThrough"), PassThroughV2::PassThrough);
    EXPECT_EQ(policyOf("EatMatching"), PassThroughV2::EatMatching);
    EXPECT_EQ(policyOf("EatNonMatching"), PassThroughV2::EatNonMatching);
}

TEST(RuleV1Migration, KnowsNoTriggersOfLaterForms) {
    EXPECT_THROW(
        migratedTrigger(
            R"({"HostTransport":{"_0":{"variants":{"Start":{}},"passThrough":{"PassThrough":{}}}}})"),
        DecodingError);
    EXPECT_THROW(migratedVoice(R"({"ProgramChange":{"_0":{"AnyValue":{}}}})", R"({"AnyChannel":{}})"),
                 DecodingError);
}

TEST(RuleV1Migration, WantsAnObjectAroundEveryByteButTheTriggerChannel) {
    EXPECT_THROW(migratedPrime(R"({"ProgramChange":{"_0":3,"_1":{"value":5}}})"), DecodingError);
    EXPECT_THROW(migratedVoice(R"({"NoteOn":{"_0":{"AnyNote":{}}}})", R"({"Channel":{"_0":{"value":1}}})"),
                 DecodingError);
}

}  // namespace
}  // namespace quillo
