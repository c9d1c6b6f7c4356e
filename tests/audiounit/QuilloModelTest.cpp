// SPDX-License-Identifier: GPL-3.0-or-later
#include "audiounit/QuilloModel.hpp"

#include <gtest/gtest.h>

namespace quillo {
namespace {

EventLogEntry entryAt(SampleTime time) {
    return {time, EventLogEntryVariants::MIDI{{0xF8}}};
}

TEST(QuilloModel, StartsEmptyWithLogsOf100Entries) {
    const QuilloModel model;
    EXPECT_TRUE(model.rules().empty());
    EXPECT_EQ(model.inLog().size(), 0U);
    EXPECT_EQ(model.outLog().size(), 0U);
    EXPECT_EQ(model.inLog().capacity(), 100U);
    EXPECT_EQ(model.outLog().capacity(), 100U);
}

TEST(QuilloModel, ItsLogsAreSeparate) {
    QuilloModel model;
    model.appendToInLog({entryAt(1)});
    model.appendToOutLog({entryAt(2), entryAt(3)});
    EXPECT_EQ(model.inLog().size(), 1U);
    EXPECT_EQ(model.inLog()[0], entryAt(1));
    EXPECT_EQ(model.outLog().size(), 2U);
    EXPECT_EQ(model.outLog()[1], entryAt(3));
}

TEST(QuilloModel, TellsThoseWhoObserveAPartOnceAChange) {
    QuilloModel model;
    int rules = 0;
    int in = 0;
    int out = 0;
    const auto rulesObservation = model.observeRules([&rules] { ++rules; });
    const auto inObservation = model.observeInLog([&in] { ++in; });
    const auto outObservation = model.observeOutLog([&out] { ++out; });
    model.setRules(std::vector<RuleEntryIdentifiable>(3));
    model.appendToInLog({entryAt(1), entryAt(2)});
    model.appendToInLog({});
    model.clearInLog();
    model.clearOutLog();
    EXPECT_EQ(rules, 1);
    EXPECT_EQ(in, 2);
    EXPECT_EQ(out, 1);
}

TEST(QuilloModel, RulesThatCannotBeShownLeaveAnEmptyListAndAReason) {
    QuilloModel model;
    model.setRules(std::vector<RuleEntryIdentifiable>(3));
    model.setNotEditable("because");
    EXPECT_TRUE(model.rules().empty());
    EXPECT_EQ(model.whyNotEditable(), "because");
    model.setRules({});
    EXPECT_EQ(model.whyNotEditable(), std::nullopt);
}

}  // namespace
}  // namespace quillo
