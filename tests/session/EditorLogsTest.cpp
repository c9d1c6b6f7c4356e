// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/EditorLogs.hpp"

#include <gtest/gtest.h>

#include <optional>

namespace quillo {
namespace {

EventLogEntry entryAt(SampleTime time) {
    return {time, EventLogEntryVariants::MIDI{{0xF8}}};
}

class EditorLogsTest : public testing::Test {
protected:
    void endBlock() const {
        input.endBlock();
        output.endBlock();
    }

    LogCallback input;
    LogCallback output;
    QuilloModel model;
};

TEST_F(EditorLogsTest, BringTheModelWhatBothCallbacksReportInOrder) {
    const EditorLogs logs(input, output);
    input(entryAt(1));
    input(entryAt(2));
    output(entryAt(3));
    endBlock();
    EXPECT_TRUE(model.inLog().empty());
    logs.moveTo(model);
    ASSERT_EQ(model.inLog().size(), 2U);
    EXPECT_EQ(model.inLog()[0], entryAt(1));
    EXPECT_EQ(model.inLog()[1], entryAt(2));
    ASSERT_EQ(model.outLog().size(), 1U);
    EXPECT_EQ(model.outLog()[0], entryAt(3));
}

TEST_F(EditorLogsTest, MoveEachEntryOnce) {
    const EditorLogs logs(input, output);
    input(entryAt(1));
    endBlock();
    logs.moveTo(model);
    logs.moveTo(model);
    EXPECT_EQ(model.inLog().size(), 1U);
}

TEST_F(EditorLogsTest, MoveWhatABlockReportedWhenItHasEnded) {
    const EditorLogs logs(input, output);
    input(entryAt(1));
    output(entryAt(2));
    logs.moveTo(model);
    EXPECT_TRUE(model.inLog().empty());
    EXPECT_TRUE(model.outLog().empty());
    endBlock();
    logs.moveTo(model);
    EXPECT_EQ(model.inLog().size(), 1U);
    EXPECT_EQ(model.outLog().size(), 1U);
}

TEST_F(EditorLogsTest, LeaveCallbacksThatMayBeCalledAfterwards) {
    std::optional<EditorLogs> logs(std::in_place, input, output);
    logs.reset();
    input(entryAt(1));
    output(entryAt(2));
    endBlock();
}

}  // namespace
}  // namespace quillo
