// SPDX-License-Identifier: GPL-3.0-or-later
#include "rules/MIDIRuleType.hpp"

#include <gtest/gtest.h>

#include "support/EveryEntry.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;

TEST(MIDIRuleType, AnOutputTypeMakesTheDefaultRuleOfThatType) {
    for (const auto type : everyOutputType()) {
        EXPECT_EQ(defaultEntry(MIDIRuleType(MIDIRuleType::OutputType{type}), 7), defaultEntry(type, 7));
    }
}

TEST(MIDIRuleType, AllNotesOffIsController123WithTheValueZero) {
    const auto entry = defaultEntry(MIDIRuleType(MIDIRuleType::ControlChangeShortCut{123}), 12);
    EXPECT_EQ(ruleFromEntry(entry), rule(onLoad(), send(controlChange(0, 123, 0)), "Message #12"));
}

}  // namespace
}  // namespace quillo
