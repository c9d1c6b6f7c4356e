// SPDX-License-Identifier: GPL-3.0-or-later
// What a host never takes is counted among what it refused.
#include <gtest/gtest.h>

#include "hosts/clap/CLAPOutput.hpp"
#include "support/OutputRecorder.hpp"

namespace quillo {
namespace {

using namespace test;

class CLAPLostMessages : public testing::Test {
protected:
    /// A block of a host that takes short messages only, and what the plug-in sends in it.
    void block(const std::vector<Bytes>& messages) {
        output.begin(&events);
        for (const auto& bytes : messages) {
            ASSERT_EQ(output.roomFor(bytes, {}), HostOutput::Room::enough);
            output.write(0, bytes);
        }
    }

    RefusedMessages lost;
    CLAPOutput output{lost};
    const clap_output_events_t events{nullptr,
                                      [](const clap_output_events_t*, const clap_event_header_t* event) {
                                          return event->type == CLAP_EVENT_MIDI;
                                      }};
};

TEST_F(CLAPLostMessages, SystemExclusiveThatTheHostRefusesBeforeAMessageThatItTakes) {
    block({{0xF0, 1, 0xF7}, {0xF0, 2, 0xF7}, {0xC0, 1}, {0xF0, 3, 0xF7}});
    EXPECT_EQ(lost.leftOut(), 0U);
    block({});
    EXPECT_EQ(lost.leftOut(), 2U);
    for (const auto body : Bytes{1, 2}) {
        const auto message = lost.takeNext();
        ASSERT_TRUE(message.has_value());
        EXPECT_TRUE(message->matches(Bytes{0xF0, body, 0xF7}));
        EXPECT_TRUE(message->fitsNever);
    }
}

TEST_F(CLAPLostMessages, SystemExclusiveAloneThatTheHostRefusesTwice) {
    block({{0xF0, 1, 0xF7}});
    block({});
    EXPECT_EQ(lost.leftOut(), 1U);
    EXPECT_FALSE(output.isWaiting());
}

TEST_F(CLAPLostMessages, NothingThatTheHostTakes) {
    block({{0xC0, 1}});
    block({});
    EXPECT_EQ(lost.leftOut(), 0U);
}

}  // namespace
}  // namespace quillo
