// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/MessageContent.hpp"

#include <gtest/gtest.h>

#include "support/OutputRecorder.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using Messages = std::vector<Bytes>;

Messages messagesOf(const MessageList& list) {
    Messages messages;
    for (const auto& message : list.messages()) {
        messages.push_back(copyOf(message.bytes()));
    }
    return messages;
}

/// The messages of an output that must be fixed.
Messages fixed(const RuleOutputVariantsV2& output) {
    const auto content = compile(output);
    const auto* bytes = content.getIf<MessageContent::Bytes>();
    EXPECT_NE(bytes, nullptr) << "the output depends on its trigger";
    return bytes != nullptr ? messagesOf(bytes->messages) : Messages{};
}

/// The messages of an output that must depend on its trigger.
Messages generated(const RuleOutputVariantsV2& output, const TriggerBytes& trigger) {
    const auto content = compile(output);
    const auto* generator = content.getIf<MessageContent::Generator>();
    EXPECT_NE(generator, nullptr) << "the output is fixed";
    return generator != nullptr ? messagesOf(generator->generate(trigger)) : Messages{};
}

RuleOutputVariantsV2 plain(StatusV2 status, GenericByteV2 byte1,
                           std::optional<GenericByteV2> byte2 = std::nullopt) {
    return RuleOutputVariantsV2::Protocol{StatusByteV2::JustStatus{status}, byte1, byte2};
}

TEST(MessageContent, AChannelMessageHasItsStatusChannelAndDataBytes) {
    EXPECT_EQ(fixed(noteOn(3, 60, 100)), (Messages{{0x93, 0x3C, 0x64}}));
}

TEST(MessageContent, EveryKindOnEveryChannelHasItsStatusByte) {
    for (std::size_t kind = 0; kind < statusNibbles.size(); ++kind) {
        for (std::uint8_t onChannel = 0; onChannel < 16; ++onChannel) {
            const auto output = protocol(static_cast<StatusV2>(kind), channel(onChannel), byte(1), byte(2));
            const auto status = static_cast<std::uint8_t>(statusNibbles[kind] | onChannel);
            EXPECT_EQ(fixed(output), (Messages{{status, 1, 2}}));
        }
    }
}

TEST(MessageContent, AnAbsentSecondDataByteMakesAMessageOfTwoBytes) {
    EXPECT_EQ(fixed(plain(StatusV2::CC, byte(7))), (Messages{{0xB0, 0x07}}));
    EXPECT_EQ(fixed(protocol(StatusV2::channelPressure, channel(2), byte(99))), (Messages{{0xD2, 99}}));
}

TEST(MessageContent, AStatusWithoutChannelIsSentOnTheFirst) {
    EXPECT_EQ(fixed(plain(StatusV2::pitchWheel, byte(0), byte(64))), (Messages{{0xE0, 0, 64}}));
}

TEST(MessageContent, NoByteIsCheckedOrMasked) {
    EXPECT_EQ(fixed(noteOn(0x4F, 200, 255)), (Messages{{0xDF, 200, 255}}));
}

TEST(MessageContent, AProgramChangeIsABankSelectAndThenTheProgram) {
    EXPECT_EQ(fixed(programChange(channel(0), 2, byte(5))), (Messages{{0xB0, 0x00, 0x02}, {0xC0, 0x05}}));
}

TEST(MessageContent, AProgramChangeTakesChannelAndProgramFromItsTrigger) {
    EXPECT_EQ(generated(programChange(triggerChannel, 0, triggerByte), {0xC4, 0x11, 0}),
              (Messages{{0xB4, 0x00, 0x00}, {0xC4, 0x11}}));
}

TEST(MessageContent, AProgramChangeTakesOneOfThemFromItsTrigger) {
    EXPECT_EQ(generated(programChange(triggerChannel, 1, byte(9)), {0x97, 60, 100}),
              (Messages{{0xB7, 0x00, 0x01}, {0xC7, 9}}));
    EXPECT_EQ(generated(programChange(channel(3), 1, triggerByte), {0xC7, 60, 100}),
              (Messages{{0xB3, 0x00, 0x01}, {0xC3, 60}}));
}

TEST(MessageContent, SystemExclusiveIsFramed) {
    EXPECT_EQ(fixed(systemExclusive({})), (Messages{{0xF0, 0xF7}}));
    EXPECT_EQ(fixed(systemExclusive({0x7E, 0x7F, 0x09, 0x01})),
              (Messages{{0xF0, 0x7E, 0x7F, 0x09, 0x01, 0xF7}}));
}

TEST(MessageContent, ASystemExclusiveBodyIsNotInspected) {
    EXPECT_EQ(fixed(systemExclusive({0xF0, 0xFF, 0xF7})), (Messages{{0xF0, 0xF0, 0xFF, 0xF7, 0xF7}}));
}

TEST(MessageContent, IsSentAsItStandsOrMadeOfTheTrigger) {
    const TriggerBytes trigger{0x95, 61, 101};
    EXPECT_EQ(messagesOf(messagesOf(compile(noteOn(3, 60, 100)), trigger)), (Messages{{0x93, 60, 100}}));
    EXPECT_EQ(messagesOf(
                  messagesOf(compile(protocol(StatusV2::CC, triggerChannel, byte(7), triggerByte)), trigger)),
              (Messages{{0xB5, 7, 101}}));
}

TEST(MessageContent, EachByteFromTheTriggerComesFromTheSamePosition) {
    const TriggerBytes trigger{0x95, 61, 101};
    EXPECT_EQ(generated(protocol(StatusV2::CC, triggerChannel, byte(7), byte(8)), trigger),
              (Messages{{0xB5, 7, 8}}));
    EXPECT_EQ(generated(protocol(StatusV2::CC, channel(1), triggerByte, byte(8)), trigger),
              (Messages{{0xB1, 61, 8}}));
    EXPECT_EQ(generated(protocol(StatusV2::CC, channel(1), byte(7), triggerByte), trigger),
              (Messages{{0xB1, 7, 101}}));
    EXPECT_EQ(generated(protocol(StatusV2::CC, triggerChannel, triggerByte, triggerByte), trigger),
              (Messages{{0xB5, 61, 101}}));
    EXPECT_EQ(generated(protocol(StatusV2::channelPressure, triggerChannel, triggerByte), trigger),
              (Messages{{0xD5, 61}}));
    EXPECT_EQ(generated(plain(StatusV2::noteOff, triggerByte, byte(0)), trigger), (Messages{{0x80, 61, 0}}));
}

}  // namespace
}  // namespace quillo
