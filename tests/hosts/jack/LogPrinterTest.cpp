// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/LogPrinter.hpp"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <fstream>
#include <sstream>

#include "platform/Descriptor.hpp"
#include "session/Session.hpp"
#include "support/TestOutput.hpp"
#include "support/TestRules.hpp"
#include "support/Threads.hpp"

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

/// 20,000 entries, a line each.
void playMuch(Session& session) {
    auto& renderer = session.renderer();
    TestOutput output;
    for (int block = 0; block < 5; ++block) {
        renderer.begin(1, output);
        for (int count = 0; count < 2000; ++count) {
            renderer.receive(0, Bytes{0xF8});
        }
        ASSERT_EQ(renderer.end(), noErr);
    }
}

TEST(LogPrinter, SaysHowManyEntriesAreMissing) {
    Session session;
    std::ostringstream out;
    LogPrinter printer(out);
    printer.listenTo(session.logInput, session.logOutput);
    playMuch(session);
    printer.print();
    EXPECT_EQ(std::ranges::count(out.str(), '\n'), 16385);
    EXPECT_TRUE(out.str().ends_with("    3616 entries came too fast and are missing here\n"));
}

/// A log into a pipe, which has room for a part of what is played.
class LogPipe : public testing::Test {
protected:
    LogPipe() {
        printer.listenTo(session.logInput, session.logOutput);
        playMuch(session);
    }

    static std::array<int, 2> makePipe() {
        std::array<int, 2> ends{};
        EXPECT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
        return ends;
    }

    void readOnce() {
        std::array<char, 65536> piece{};
        const auto count = ::read(reader.number(), piece.data(), piece.size());
        text.append(piece.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
    [[nodiscard]] bool isWhole() const { return text.ends_with("are missing here\n"); }
    void expectEachLineOnce() const {
        EXPECT_EQ(std::ranges::count(text, '\n'), 16385);
        EXPECT_TRUE(text.ends_with("    3616 entries came too fast and are missing here\n"));
    }

    std::array<int, 2> ends = makePipe();
    const Descriptor reader{ends[0]};
    const Descriptor writer{ends[1]};
    std::ofstream out{"/proc/self/fd/" + std::to_string(writer.number())};
    Session session;
    LogPrinter printer{out, writer.number()};
    std::string text;
};

TEST_F(LogPipe, AReaderThatStandsStillKeepsNobodyWaitingAndGetsItAllWhenItGoesOn) {
    printer.print();
    printer.print();
    while (!isWhole()) {
        readOnce();
        printer.print();
    }
    expectEachLineOnce();
}

TEST_F(LogPipe, AReaderThatIsSlowIsGivenTimeAtTheEnd) {
    {
        JoinedThread slow([this] {
            while (!isWhole()) {
                readOnce();
            }
        });
        printer.print(std::chrono::hours(1));
    }
    expectEachLineOnce();
}

}  // namespace
}  // namespace quillo
