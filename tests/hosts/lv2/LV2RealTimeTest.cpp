// SPDX-License-Identifier: GPL-3.0-or-later
// What the plug-in that was built does in `run` that a render thread must not do: nothing.
#include <gtest/gtest.h>

#include "hosts/lv2/LV2TestHost.hpp"
#include "persistence/PluginData.hpp"
#include "realtime/CallCounter.hpp"
#include "realtime/EveryRule.hpp"

namespace quillo {
namespace {

using namespace test;

class LV2RealTime : public testing::Test {
protected:
    LV2RealTime() {
        host.loadRules(everyRule());
        host.activate();
    }

    /// A block of 512 frames into a buffer of so many bytes; what it does is added to `calls`.
    void run(std::uint32_t capacity = 65536) {
        auto& out = *reinterpret_cast<LV2_Atom_Sequence*>(output.data());
        out.atom = {capacity, lv2Id(LV2_ATOM__Chunk)};
        host.connect(0, &events.atom());
        host.connect(1, &out);
        const CallCounter::Scope scope;
        host.descriptor().run(host.handle(), 512);
        calls += scope.counts();
        written += out.atom.size;
    }

    void addEveryMessage() {
        for (std::int64_t time = 0; time < 512; time += 64) {
            for (const auto& message : everyMessage) {
                events.addMIDI(time, {message.begin(), message.begin() + lengthOf(message[0])});
            }
            events.addMIDI(time, Bytes(1000, 0xF0));
            events.addMIDI(time, {1, 2, 3, 4, 5});
        }
    }

    static std::ptrdiff_t lengthOf(std::uint8_t status) {
        return status >= 0xF8 ? 1 : (status & 0xF0U) == 0xC0 ? 2 : 3;
    }

    LV2TestHost host{lv2Stereo};
    LV2Sequence events;
    std::vector<std::uint64_t> output = std::vector<std::uint64_t>(65536 / sizeof(std::uint64_t));
    CallCounts calls;
    std::size_t written = 0;
};

TEST_F(LV2RealTime, NeitherAllocatesNorFreesNorLocksWhateverRulesFire) {
    addEveryMessage();
    for (int i = 0; i < 200; ++i) {
        run();
    }
    EXPECT_GT(written, 1000000U);
    EXPECT_EQ(calls, noCalls);
}

TEST_F(LV2RealTime, NeitherAllocatesNorFreesNorLocksWhenTheTransportChanges) {
    for (int i = 0; i < 200; ++i) {
        events.clear();
        events.addPosition(100, 0.0, 0);
        events.addPosition(200, 1.0, 1000 * i);
        events.addPosition(300, std::nullopt, 0);
        run();
    }
    EXPECT_GT(written, 100000U);
    EXPECT_EQ(calls, noCalls);
}

TEST_F(LV2RealTime, NeitherAllocatesNorFreesNorLocksWhenTheHostHasNoRoom) {
    addEveryMessage();
    for (int i = 0; i < 200; ++i) {
        host.unit().onRulesChanged(everyRule());
        run(static_cast<std::uint32_t>(i * 8));
    }
    EXPECT_EQ(calls, noCalls);
}

TEST_F(LV2RealTime, NeitherAllocatesNorFreesNorLocksWhenRulesWereExchanged) {
    addEveryMessage();
    for (int i = 0; i < 20; ++i) {
        run();
        host.loadRules(i % 2 == 0 ? std::vector<Rule>() : everyRule());
    }
    run();
    EXPECT_EQ(calls, noCalls);
}

#ifdef QUILLO_COUNTS_CALLS
/// Restoring a state, from a host that does nothing of the kind itself.
TEST_F(LV2RealTime, WouldBeSeenToAllocateAndLock) {
    static const LV2_URID string = lv2Id(LV2_ATOM__String);
    const auto retrieve = [](LV2_State_Handle, std::uint32_t, std::size_t* size, std::uint32_t* type,
                             std::uint32_t*) -> const void* {
        static constexpr char document[] = R"({"rules":[]})";
        *size = sizeof(document);
        *type = string;
        return document;
    };
    const CallCounter::Scope scope;
    const auto status = host.state().restore(host.handle(), retrieve, nullptr, 0, nullptr);
    const auto counts = scope.counts();
    EXPECT_EQ(status, LV2_STATE_SUCCESS);
    EXPECT_GT(counts.allocations, 0U);
    EXPECT_GT(counts.frees, 0U);
#ifdef QUILLO_COUNTS_LOCKS
    EXPECT_GT(counts.locks, 0U);
#endif
}
#endif

}  // namespace
}  // namespace quillo
