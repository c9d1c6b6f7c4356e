// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/LogPrinter.hpp"

#include <gtest/gtest.h>

#include <sstream>

#include "hosts/adapter/HostedUnit.hpp"
#include "support/OutputRecorder.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;

/// One block with one message at its frame 10.
void play(HostedUnit& hosted) {
    auto& renderer = hosted.renderer();
    renderer.begin(64);
    renderer.tellTransport(0, AUHostTransportStateMoving, 0.0);
    renderer.receive(10, Bytes{0x90, 60, 100});
    ASSERT_EQ(renderer.end(), noErr);
}

TEST(LogPrinter, PrintsBothLogsInTheOrderInWhichThingsHappened) {
    HostedUnit hosted;
    hosted.unit().processor->setRules(
        {rule(onNoteOn(any, any, PassThroughV2::EatMatching), send(controlChange(1, 7, 5)))});
    std::ostringstream out;
    LogPrinter printer(out);
    printer.listenTo(hosted.unit());
    play(hosted);
    EXPECT_EQ(out.str(), "");
    printer.print();
    EXPECT_EQ(out.str(), "in  [0] AU Host Start\n"
                         "in  [10] 90 3c 64           note-on 60 (C3), velocity 100, channel 1\n"
                         "out [10] b1 07 05           controller 7 (Volume), value 5, channel 2\n");
    printer.print();
    EXPECT_EQ(std::ranges::count(out.str(), '\n'), 3);
}

TEST(LogPrinter, TheEditorsLogsGoOn) {
    HostedUnit hosted;
    hosted.controller().viewDidLoad();
    std::ostringstream out;
    LogPrinter printer(out);
    printer.listenTo(hosted.unit());
    play(hosted);
    hosted.drain();
    printer.print();
    EXPECT_EQ(hosted.controller().model()->inLog().size(), 2U);
    EXPECT_EQ(hosted.controller().model()->outLog().size(), 1U);
    EXPECT_EQ(std::ranges::count(out.str(), '\n'), 3);
}

TEST(LogPrinter, SaysHowManyEntriesAreMissing) {
    HostedUnit hosted;
    std::ostringstream out;
    LogPrinter printer(out);
    printer.listenTo(hosted.unit());
    auto& renderer = hosted.renderer();
    for (int block = 0; block < 5; ++block) {
        renderer.begin(1);
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
