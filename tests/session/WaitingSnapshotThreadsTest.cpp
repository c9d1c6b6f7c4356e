// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>

#include "session/Session.hpp"
#include "support/TestOutput.hpp"
#include "support/TestRules.hpp"
#include "support/Threads.hpp"

namespace quillo {
namespace {

using namespace test;

/// A host at 1000 frames a second that never stops, with two rules: one for outputs that wait for hours, and
/// one whose outputs come and go.
class BusyHost {
public:
    BusyHost() {
        EXPECT_EQ(session.setSampleRate(1000.0), std::nullopt);
        session.install(
            {rule(onNoteOn(exactly(1)), send(systemExclusive(Bytes(20, 1)), 100'000'000), staying),
             rule(onNoteOn(exactly(2)), send(noteOn(1, 2, 3), 40), "an output that goes again")});
        session.viewDidLoad();
    }

    /// [render] A block of 16 frames with so many messages on each of the keys.
    void block(std::size_t thatStay, std::size_t thatGo) {
        output_.sent.clear();
        session.renderer().begin(16, output_);
        for (std::size_t i = 0; i < thatStay; ++i) {
            session.renderer().receive(0, Bytes{0x90, 1, 1});
        }
        for (std::size_t i = 0; i < thatGo; ++i) {
            session.renderer().receive(8, Bytes{0x90, 2, 1});
        }
        EXPECT_EQ(session.renderer().end(), noErr);
    }

    static constexpr const char* staying = "an output that stays";

    Session session;

private:
    TestOutput output_;
};

TEST(WaitingSnapshotThreads, ShowsEachThatWaitsOnceWhileTheRenderThreadRuns) {
    constexpr std::size_t most = 8960;
    BusyHost host;
    host.block(most, 0);
    std::atomic<bool> stopped = false;
    const auto render = [&](std::size_t) {
        for (std::size_t number = 0; !stopped; ++number) {
            host.block(0, number % 50);
            std::this_thread::yield();
        }
    };
    const Threads renderer(1, render);
    auto& session = host.session;
    const auto& model = *session.model();
    session.watchWaiting(true);
    std::vector<std::vector<WaitingOutput>> seen;
    const auto observation = session.model()->observeWaiting([&] {
        if (!model.waiting().empty()) {
            seen.push_back(model.waiting());
        }
    });
    while (seen.size() < 5) {
        session.drain();
        std::this_thread::yield();
    }
    stopped = true;
    const MessageList exclusive(MIDIMessage::copyOf([] {
        Bytes bytes(20, 1);
        bytes.insert(bytes.begin(), 0xF0);
        bytes.push_back(0xF7);
        return bytes;
    }()));
    for (const auto& list : seen) {
        std::vector<bool> found(most + 1);
        for (const auto& output : list) {
            if (output.ruleName != BusyHost::staying) {
                EXPECT_EQ(output.messages, MessageList(MIDIMessage{0x91, 2, 3}));
                continue;
            }
            EXPECT_EQ(output.messages, exclusive);
            ASSERT_LE(output.number, most);
            const auto number = static_cast<std::size_t>(output.number);
            EXPECT_FALSE(found[number]);
            found[number] = true;
        }
        EXPECT_EQ(std::ranges::count(found, true), static_cast<std::ptrdiff_t>(most));
    }
}

/// Edits, cancellations and panics, while the host plays on.
TEST(WaitingSnapshotThreads, EverythingCanBeAskedForWhileTheRenderThreadRuns) {
    BusyHost host;
    host.block(100, 0);
    std::atomic<bool> stopped = false;
    const auto render = [&](std::size_t) {
        while (!stopped) {
            host.block(3, 5);
            std::this_thread::yield();
        }
    };
    auto& session = host.session;
    std::size_t panics = 0;
    std::size_t cancelled = 0;
    {
        const Threads renderer(1, render);
        session.watchWaiting(true);
        session.setNotesEndWhenRulesChange(true);
        while (panics < 20) {
            session.drain();
            if (session.model()->panicAnswer()) {
                session.model()->dismissPanicAnswer();
                ++panics;
            }
            if (const auto& waiting = session.model()->waiting(); !waiting.empty()) {
                session.cancelWaiting(waiting.back().number);
                ++cancelled;
            }
            if (cancelled > panics) {
                session.panic();
            }
            auto rules = session.processor().rules();
            std::ranges::reverse(rules);
            session.onRulesChanged(rules);
            session.model()->showRules(rules);
            EXPECT_EQ(session.model()->hits().size(), 2U);
            std::this_thread::yield();
        }
        stopped = true;
    }
    session.drain();
    const auto& hits = session.model()->hits();
    ASSERT_EQ(hits.size(), 2U);
    EXPECT_GT(hits[0].count, 0U);
    EXPECT_GT(hits[1].count, 0U);
}

}  // namespace
}  // namespace quillo
