// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>

#include <string>

#include "platform/FatalError.hpp"

namespace quillo {
namespace {

std::string raisedText(FatalErrorSlot& slot) {
    try {
        slot.raise();
    } catch (const FatalError& error) {
        return error.what();
    }
    return {};
}

TEST(FatalErrorSlot, IsEmptyAtFirst) {
    FatalErrorSlot slot;
    EXPECT_FALSE(slot.isSet());
    EXPECT_NO_THROW(slot.raise());
}

TEST(FatalErrorSlot, AnswersTheRenderStepsStatus) {
    FatalErrorSlot slot;
    EXPECT_EQ(slot.set("time overflow"), kQuilloErr_FatalError);
    EXPECT_TRUE(slot.isSet());
}

TEST(FatalErrorSlot, ReportsItsErrorWithoutGivingItUp) {
    FatalErrorSlot slot;
    EXPECT_FALSE(slot.error().has_value());
    const auto line = std::to_string(__LINE__ + 1);
    slot.set("time overflow");
    const auto text = "Fatal error: time overflow (FatalErrorSlotTest.cpp:" + line + ")";
    ASSERT_TRUE(slot.error().has_value());
    EXPECT_EQ(slot.error()->what(), text);
    EXPECT_EQ(slot.error()->inWords(), "Time overflow.");
    EXPECT_EQ(raisedText(slot), text);
    EXPECT_FALSE(slot.error().has_value());
}

TEST(FatalErrorSlot, RaisesTheErrorAndWhereItWasSet) {
    FatalErrorSlot slot;
    const auto line = std::to_string(__LINE__ + 1);
    slot.set("time overflow");
    EXPECT_EQ(raisedText(slot), "Fatal error: time overflow (FatalErrorSlotTest.cpp:" + line + ")");
}

TEST(FatalErrorSlot, KeepsTheFirstErrorButAnswersTheSecondToo) {
    FatalErrorSlot slot;
    slot.set("first");
    EXPECT_EQ(slot.set("second"), kQuilloErr_FatalError);
    EXPECT_TRUE(raisedText(slot).starts_with("Fatal error: first ("));
}

TEST(FatalErrorSlot, IsEmptyOnceRaisedAndTakesTheNextError) {
    FatalErrorSlot slot;
    slot.set("first");
    EXPECT_THROW(slot.raise(), FatalError);
    EXPECT_FALSE(slot.isSet());
    EXPECT_NO_THROW(slot.raise());

    slot.set("second");
    EXPECT_TRUE(raisedText(slot).starts_with("Fatal error: second ("));
}

}  // namespace
}  // namespace quillo
