// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/LogPrinter.hpp"

#include <gtest/gtest.h>

#include <sstream>

#include "session/Session.hpp"
#include "support/TestOutput.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;

/// One block with one message at its frame 10.
void play(Session& session) {
    auto& renderer = session.renderer();
    TestOutput output;
    renderer.begin(64, output);
    renderer.reportTransport(0, {.isMoving = true}, 0.0);
    renderer.receive(10, Bytes{0x90, 60, 100});
    ASSERT_EQ(renderer.end(), noErr);
}

TEST(LogPrinter, PrintsBothLogsInTheOrderInWhichThingsHappened) {
    Session session;
    session.processor().setRules(
        {rule(onNoteOn(any, any, PassThroughV2::EatMatching), send(controlChange(1, 7, 5)))});
    std::ostringstream out;
    LogPrinter printer(out);
    printer.listenTo(session.logInput, session.logOutput);
    play(session);
    EXPECT_EQ(out.str(), "");
    printer.print();
    EXPECT_EQ(out.str(), "in  [0] AU Host Start\n"
                         "in  [10] 90 3c 64           note-on 60 (C3), velocity 100, channel 1\n"
                         "out [10] b1 07 05           controller 7 (Volume), value 5, channel 2\n");
    printer.print();
    EXPECT_EQ(std::ranges::count(out.str(), '\n'), 3);
}

TEST(LogPrinter, TheEditorsLogsGoOn) {
    Session session;
    session.viewDidLoad();
    std::ostringstream out;
    LogPrinter printer(out);
    printer.listenTo(session.logInput, session.logOutput);
    play(session);
    session.drain();
    printer.print();
    EXPECT_EQ(session.model()->inLog().size(), 2U);
    EXPECT_EQ(session.model()->outLog().size(), 1U);
    EXPECT_EQ(std::ranges::count(out.str(), '\n'), 3);
}

TEST(LogPrinter, SaysHowManyEntriesAreMissing) {
    Session session;
    std::ostringstream out;
    LogPrinter printer(out);
    printer.listenTo(session.logInput, session.logOutput);
    auto& renderer = session.renderer();
    TestOutput output;
    for (int block = 0; block < 5; ++block) {
        renderer.begin(1, output);
        for (int count = 0; count < 2000; ++count) {
            renderer.receive(0, Bytes{0xF8});
        }
        ASSERT_EQ(renderer.end(), noErr);
    }
    printer.print();
    EXPECT_EQ(std::ranges::count(out.str(), '\n'), 16385);
    EXPECT_TRUE(out.str().ends_with("    3616 entries came too fast and are missing here\n"));
}

}  // namespace
}  // namespace quillo
