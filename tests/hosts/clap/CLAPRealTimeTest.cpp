// SPDX-License-Identifier: GPL-3.0-or-later
// What the plug-in that was built does in `process` that a render thread must not do: nothing.
#include <gtest/gtest.h>

#include <string_view>
#include <utility>

#include "hosts/clap/CLAPTestHost.hpp"
#include "realtime/CallCounter.hpp"
#include "realtime/EveryRule.hpp"

namespace quillo {
namespace {

using namespace test;

/// A list that counts what it takes, and takes everything or nothing.
class CountingOutput {
public:
    bool isOpen = true;
    std::size_t taken = 0;
    std::size_t refused = 0;

    [[nodiscard]] const clap_output_events_t* list() const { return &list_; }

private:
    clap_output_events_t list_{this, [](const clap_output_events_t* list, const clap_event_header_t*) {
                                   auto& self = *static_cast<CountingOutput*>(list->ctx);
                                   ++(self.isOpen ? self.taken : self.refused);
                                   return self.isOpen;
                               }};
};

class CLAPRealTime : public testing::Test {
protected:
    CLAPRealTime() {
        host.loadRules(everyRule());
        host.start();
    }

    /// A block of 512 frames; what it does is added to `calls`.
    void process(const clap_event_transport_t* transport = nullptr) {
        clap_process_t process{};
        process.steady_time = -1;
        process.frames_count = 512;
        process.transport = transport;
        process.in_events = events.list();
        process.out_events = output.list();
        const CallCounter::Scope scope;
        host.plugin->process(host.plugin, &process);
        calls += scope.counts();
    }

    void addEveryMessage() {
        for (std::uint32_t time = 0; time < 512; time += 64) {
            for (const auto& message : everyMessage) {
                events.addMIDI(time, {message.begin(), message.end()});
            }
            events.addNote(CLAP_EVENT_NOTE_ON, time, 3, 60, 0.5);
            events.addNote(CLAP_EVENT_NOTE_CHOKE, time, -1, -1);
            events.addExpression(CLAP_NOTE_EXPRESSION_PRESSURE, time, 3, -1, 0.5);
            events.addMIDI(time, Bytes(1000, 0xF0));
        }
    }

    CLAPTestHost host;
    CLAPEvents events;
    CountingOutput output;
    CallCounts calls;
};

TEST_F(CLAPRealTime, NeitherAllocatesNorFreesNorLocksWhateverRulesFire) {
    addEveryMessage();
    for (int i = 0; i < 200; ++i) {
        process();
    }
    EXPECT_GT(output.taken, 10000U);
    EXPECT_EQ(calls, noCalls);
}

TEST_F(CLAPRealTime, NeitherAllocatesNorFreesNorLocksWhenTheTransportChanges) {
    for (int i = 0; i < 200; ++i) {
        events.clear();
        events.addTransport(100, clapTransport(0, 0.0));
        events.addTransport(200, clapTransport(CLAP_TRANSPORT_IS_PLAYING, 1000.0 * i, i % 2 == 0));
        const auto atStart = clapTransport(CLAP_TRANSPORT_IS_PLAYING, 0.0);
        process(&atStart);
    }
    EXPECT_GT(output.taken, 1000U);
    EXPECT_EQ(calls, noCalls);
}

TEST_F(CLAPRealTime, NeitherAllocatesNorFreesNorLocksWhenTheHostHasNoRoom) {
    addEveryMessage();
    for (int i = 0; i < 200; ++i) {
        output.isOpen = i % 5 == 4;
        process();
    }
    EXPECT_GT(output.taken, 1000U);
    EXPECT_GT(output.refused, 100U);
    EXPECT_EQ(calls, noCalls);
}

TEST_F(CLAPRealTime, NeitherAllocatesNorFreesNorLocksWhenRulesWereExchanged) {
    addEveryMessage();
    for (int i = 0; i < 20; ++i) {
        process();
        host.loadRules(i % 2 == 0 ? std::vector<Rule>() : everyRule());
    }
    process();
    EXPECT_EQ(calls, noCalls);
}

#ifdef QUILLO_COUNTS_CALLS
/// Loading a state, from a stream that does nothing of the kind itself.
TEST_F(CLAPRealTime, WouldBeSeenToAllocateAndLock) {
    std::string_view document = R"({"rules":[]})";
    const clap_istream_t stream{&document, [](const clap_istream_t* from, void* buffer, std::uint64_t) {
                                    auto& left = *static_cast<std::string_view*>(from->ctx);
                                    const auto piece = std::exchange(left, {});
                                    piece.copy(static_cast<char*>(buffer), piece.size());
                                    return static_cast<std::int64_t>(piece.size());
                                }};
    const auto& state = host.extension<clap_plugin_state_t>(CLAP_EXT_STATE);
    const CallCounter::Scope scope;
    const bool loaded = state.load(host.plugin, &stream);
    const auto counts = scope.counts();
    EXPECT_TRUE(loaded);
    EXPECT_GT(counts.allocations, 0U);
    EXPECT_GT(counts.frees, 0U);
#ifdef QUILLO_COUNTS_LOCKS
    EXPECT_GT(counts.locks, 0U);
#endif
}
#endif

}  // namespace
}  // namespace quillo
