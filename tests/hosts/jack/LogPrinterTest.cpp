// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/LogPrinter.hpp"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <utility>

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

/// Two ends of what has room for a part of what is played.
struct Channel {
    Descriptor reader;
    Descriptor writer;
};

Channel makePipe() {
    std::array<int, 2> ends{};
    EXPECT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

Channel makeTerminal() {
    Descriptor reader(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
    EXPECT_EQ(::unlockpt(reader.number()), 0);
    Descriptor writer(::ioctl(reader.number(), TIOCGPTPEER, O_RDWR | O_NOCTTY | O_CLOEXEC));
    EXPECT_TRUE(writer.isOpen());
    return {std::move(reader), std::move(writer)};
}

/// What is printed for a reader, and beside it what is printed for one who never keeps it waiting.
struct LogAndReader {
    explicit LogAndReader(Channel made) : channel(std::move(made)) {
        printer.listenTo(session.logInput, session.logOutput);
        toText.listenTo(session.logInput, session.logOutput);
        playMuch(session);
        toText.print();
    }

    void readOnce() {
        std::array<char, 65536> piece{};
        const auto count = ::read(channel.reader.number(), piece.data(), piece.size());
        read.append(piece.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        std::erase(read, '\r');
    }
    [[nodiscard]] bool isRead() const { return read.size() >= text.view().size(); }

    Channel channel;
    std::ofstream out{"/proc/self/fd/" + std::to_string(channel.writer.number())};
    std::ostringstream text;
    Session session;
    LogPrinter printer{out, channel.writer.number()};
    LogPrinter toText{text};
    std::string read;
};

class LogPrinterTo : public testing::TestWithParam<Channel (*)()> {};

INSTANTIATE_TEST_SUITE_P(Pipe, LogPrinterTo, testing::Values(makePipe));
INSTANTIATE_TEST_SUITE_P(Terminal, LogPrinterTo, testing::Values(makeTerminal));

TEST_P(LogPrinterTo, AReaderThatStandsStillIsNotWaitedForAndGetsItAllWhenItGoesOn) {
    LogAndReader log(GetParam()());
    log.printer.print();
    log.printer.print();
    while (!log.isRead()) {
        log.readOnce();
        log.printer.print();
    }
    EXPECT_TRUE(log.read == log.text.view());
}

TEST_P(LogPrinterTo, AReaderThatIsSlowIsGivenTimeAtTheEnd) {
    LogAndReader log(GetParam()());
    {
        JoinedThread slow([&log] {
            while (!log.isRead()) {
                log.readOnce();
            }
        });
        log.printer.print(std::chrono::hours(1));
    }
    EXPECT_TRUE(log.read == log.text.view());
}

TEST(LogPrinter, ATerminalThatHasGoneIsNotWaitedFor) {
    LogAndReader log(makeTerminal());
    log.channel.reader.close();
    log.printer.print(std::chrono::hours(1));
}

}  // namespace
}  // namespace quillo
