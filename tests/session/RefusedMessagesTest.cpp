// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/RefusedMessages.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/OutputRecorder.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

/// System exclusive with a body of so many of these bytes.
Bytes exclusive(std::size_t size, std::uint8_t byte) {
    Bytes bytes(size + 2, byte);
    bytes.front() = 0xF0;
    bytes.back() = 0xF7;
    return bytes;
}

class RefusedMessagesTest : public testing::Test {
protected:
    std::string textFor(const Bytes& bytes, bool fitsNever) {
        refused.add(bytes, fitsNever);
        return refusalText(refused.takeNext().value(), rules, shelf);
    }

    RefusedMessages refused;
    RuleShelf shelf;
    const std::vector<Rule> rules{rule(onNoteOn(), send(noteOn(0, 1, 1)), "note"),
                                  rule(onNoteOn(), send(systemExclusive(Bytes(100, 1))), "patch"),
                                  rule(onNoteOn(), send(systemExclusive(Bytes(70000, 2))), "dump")};
};

TEST_F(RefusedMessagesTest, AreCountedAndTakenInTheirOrder) {
    refused.add(exclusive(3, 1), false);
    refused.add(exclusive(100, 7), true);
    EXPECT_TRUE(refused.takeNext()->matches(exclusive(3, 1)));
    EXPECT_TRUE(refused.takeNext()->matches(exclusive(100, 7)));
    EXPECT_FALSE(refused.takeNext().has_value());
    EXPECT_EQ(refused.refused(), 1U);
    EXPECT_EQ(refused.leftOut(), 1U);
}

TEST_F(RefusedMessagesTest, AreKnownByTheirLengthAndTheirBeginning) {
    refused.add(exclusive(100, 7), true);
    const auto message = refused.takeNext();
    EXPECT_FALSE(message->matches(exclusive(99, 7)));
    EXPECT_FALSE(message->matches(exclusive(100, 8)));
    EXPECT_FALSE(message->matches(Bytes{}));
}

TEST_F(RefusedMessagesTest, AreTheSameWhateverWasKeptInTheirPlaceBefore) {
    for (std::uint64_t i = 0; i < RefusedMessages::room; ++i) {
        refused.add(exclusive(100, 7), true);
        static_cast<void>(refused.takeNext());
    }
    refused.add(exclusive(3, 7), true);
    EXPECT_EQ(refused.takeNext(), (RefusedMessages::Message{{0xF0, 7, 7, 7, 0xF7}, 5, true}));
}

TEST_F(RefusedMessagesTest, AreAllTheSameWithoutSystemExclusive) {
    refused.add(Bytes{0xC0, 1}, false);
    refused.add(Bytes{0x90, 60, 1}, false);
    refused.add({}, false);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(refused.takeNext(), RefusedMessages::Message());
    }
}

TEST_F(RefusedMessagesTest, OfVeryManyTheFirstAreKeptAndAllAreCounted) {
    for (int round = 1; round <= 3; ++round) {
        for (std::uint8_t i = 0; i < 100; ++i) {
            refused.add(exclusive(3, i), false);
        }
        for (std::uint8_t i = 0; i < RefusedMessages::room; ++i) {
            EXPECT_TRUE(refused.takeNext()->matches(exclusive(3, i)));
        }
        EXPECT_FALSE(refused.takeNext().has_value());
        EXPECT_EQ(refused.refused(), 100U * static_cast<unsigned>(round));
    }
}

TEST_F(RefusedMessagesTest, TheTextNamesTheRuleWhoseMessageNeverFits) {
    EXPECT_THAT(textFor(exclusive(70000, 2), true),
                AllOf(HasSubstr("rule 3 \"dump\""), HasSubstr("70002 bytes"), HasSubstr("left out")));
}

TEST_F(RefusedMessagesTest, TheTextCountsRulesThatAreSwitchedOff) {
    shelf = {{0, rules[0]}, {1, rules[1]}, {2, rules[2]}};
    EXPECT_THAT(textFor(exclusive(100, 1), true), HasSubstr("rule 4 \"patch\""));
    EXPECT_THAT(textFor(exclusive(70000, 2), true), HasSubstr("rule 6 \"dump\""));
}

TEST_F(RefusedMessagesTest, NoNameOfARuleBreaksTheTextOrFillsIt) {
    const std::vector<Rule> odd{
        rule(onNoteOn(), send(systemExclusive(Bytes(5, 1))), "a\n" + std::string(5000, 'b'))};
    refused.add(exclusive(5, 1), true);
    const auto text = refusalText(refused.takeNext().value(), odd, {});
    EXPECT_THAT(text, AllOf(HasSubstr("rule 1 \"a\\nbbb"), Not(HasSubstr("\n"))));
    EXPECT_LT(text.size(), 300U);
}

TEST_F(RefusedMessagesTest, ARuleWithoutANameIsItsNumberAlone) {
    const std::vector<Rule> unnamed{rule(onNoteOn(), send(systemExclusive(Bytes(5, 1))), "")};
    refused.add(exclusive(5, 1), true);
    EXPECT_THAT(refusalText(refused.takeNext().value(), unnamed, {}),
                testing::StartsWith("The SysEx of rule 1 is 7 bytes long."));
}

TEST_F(RefusedMessagesTest, TheTextNamesTheRuleWhoseMessageHadNoRoomThisTime) {
    EXPECT_THAT(textFor(exclusive(100, 1), false),
                AllOf(HasSubstr("rule 2 \"patch\""), HasSubstr("no room left")));
}

TEST_F(RefusedMessagesTest, TheTextNamesNoRuleForMessagesOfNone) {
    EXPECT_THAT(textFor(exclusive(70000, 3), true), AllOf(HasSubstr("70002 bytes"), Not(HasSubstr("rule "))));
    EXPECT_THAT(textFor(Bytes{0x90, 1, 1}, false),
                AllOf(HasSubstr("messages were lost"), Not(HasSubstr("\""))));
}

}  // namespace
}  // namespace quillo
