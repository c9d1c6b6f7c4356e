// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <array>
#include <random>
#include <set>
#include <utility>

#include "session/BlockRenderer.hpp"
#include "support/RandomRules.hpp"
#include "support/TestOutput.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using Kind = RenderRequests::Kind;

class EndOfNotesTest : public testing::Test {
protected:
    /// What leaves in a block of so many frames with these messages.
    Timed block(std::uint32_t frames, const Timed& messages = {}) {
        renderer.begin(frames, output);
        for (const auto& [offset, bytes] : messages) {
            renderer.receive(offset, bytes);
        }
        EXPECT_EQ(renderer.end(), noErr);
        return output.take();
    }

    void endNotes() { renderer.requests().ask(Kind::endOfNotes); }

    /// The host takes so many messages in each block from now on.
    void roomFor(std::size_t most) {
        output.room = [this, most](HostOutput::Bytes, const HostOutput::Waiting& waiting) {
            return output.sent.size() + waiting.messages < most ? HostOutput::Room::enough
                                                                : HostOutput::Room::full;
        };
    }

    RuleProcessor processor;
    LogCallback logInput;
    LogCallback logOutput;
    BlockRenderer renderer{processor, logInput, logOutput, HostTransport()};
    TestOutput output;
};

TEST_F(EndOfNotesTest, NotesThatSoundEndAndPedalsThatAreDownAreLetGoBeforeAllElse) {
    block(16, {{1, {0x92, 60, 1}}, {2, {0x90, 61, 1}}, {3, {0x90, 62, 1}}, {4, {0xB2, 64, 127}}});
    block(16, {{1, {0x80, 61, 0}}});
    endNotes();
    EXPECT_EQ(block(16, {{0, {0x90, 63, 1}}}),
              (Timed{{0, {0x80, 62, 64}}, {0, {0x82, 60, 64}}, {0, {0xB2, 64, 0}}, {0, {0x90, 63, 1}}}));
    endNotes();
    EXPECT_EQ(block(16), (Timed{{0, {0x80, 63, 64}}}));
    endNotes();
    EXPECT_EQ(block(16), Timed());
}

TEST_F(EndOfNotesTest, TheOutLogShowsWhatLeft) {
    std::vector<std::string> told;
    logOutput = WithoutDeadline([&](const EventLogEntry& entry) { told.push_back(text(entry)); });
    block(16, {{1, {0x90, 60, 1}}});
    renderer.requests().ask(Kind::endOfNotes);
    block(16);
    EXPECT_EQ(told, (std::vector<std::string>{"[1] 90 3c 01", "[16] 80 3c 40"}));
}

/// The rule's note comes later than the note-off that is sent first.
TEST_F(EndOfNotesTest, WhatCountsIsTheOrderInWhichMessagesLeave) {
    processor.sampleRate = 1000;
    processor.setRules({rule(onControlChange(1), send(noteOn(0, 60, 9), 10))});
    EXPECT_EQ(block(16, {{0, {0xB0, 1, 1}}, {5, {0x80, 60, 0}}}),
              (Timed{{0, {0xB0, 1, 1}}, {5, {0x80, 60, 0}}, {10, {0x90, 60, 9}}}));
    endNotes();
    EXPECT_EQ(block(16), (Timed{{0, {0x80, 60, 64}}}));
}

TEST_F(EndOfNotesTest, WhatFindsNoRoomStaysOwed) {
    block(16, {{0, {0x90, 60, 1}}, {0, {0x90, 61, 1}}, {0, {0x90, 62, 1}}});
    roomFor(2);
    endNotes();
    EXPECT_TRUE(renderer.isOwing());
    EXPECT_EQ(block(16), (Timed{{0, {0x80, 60, 64}}, {0, {0x80, 61, 64}}}));
    EXPECT_TRUE(renderer.isOwing());
    EXPECT_EQ(block(16), (Timed{{0, {0x80, 62, 64}}}));
    EXPECT_FALSE(renderer.isOwing());
    EXPECT_EQ(renderer.refused().refused(), 0U);
}

/// A host with room for everything but note-offs.
TEST_F(EndOfNotesTest, ANoteThatHasEndedOrBegunAnewMeanwhileIsOwedNothing) {
    block(16, {{0, {0x90, 60, 1}}, {0, {0x90, 61, 1}}, {0, {0x90, 62, 1}}, {0, {0xB0, 64, 127}}});
    const auto roomy = output.room;
    output.room = [](HostOutput::Bytes bytes, const HostOutput::Waiting&) {
        return bytes[0] == 0x80 ? HostOutput::Room::full : HostOutput::Room::enough;
    };
    endNotes();
    const Timed others{{0, {0x90, 60, 2}}, {0, {0x90, 61, 0}}, {0, {0xB0, 64, 0}}};
    EXPECT_EQ(block(16, others), others);
    output.room = roomy;
    EXPECT_EQ(block(16), (Timed{{0, {0x80, 62, 64}}}));
    endNotes();
    EXPECT_EQ(block(16), (Timed{{0, {0x80, 60, 64}}}));
}

TEST_F(EndOfNotesTest, WhereTheOutputIsTheInputsBufferTheyLeaveFirstAsWell) {
    block(16, {{0, {0x90, 60, 1}}});
    endNotes();
    renderer.begin(16, output, BlockRenderer::Delivery::atTheEnd);
    renderer.receive(0, Bytes{0x90, 60, 2});
    EXPECT_EQ(renderer.end(), noErr);
    EXPECT_EQ(output.take(), (Timed{{0, {0x80, 60, 64}}, {0, {0x90, 60, 2}}}));
}

TEST_F(EndOfNotesTest, NotesThatOnlyPassedCountAsWell) {
    renderer.beginPassing(16, output, BlockRenderer::Delivery::asItComes);
    renderer.pass(3, Bytes{0x95, 60, 1});
    EXPECT_EQ(renderer.end(), noErr);
    output.take();
    endNotes();
    EXPECT_EQ(block(16), (Timed{{0, {0x85, 60, 64}}}));
}

/// A host with room for one note-off only, and then for all.
TEST_F(EndOfNotesTest, WhatPassesSettlesWhatItEndsAndWhatFindsNoRoomDoesNot) {
    block(16, {{0, {0x90, 60, 1}}, {0, {0x90, 61, 1}}, {0, {0x90, 62, 1}}});
    const auto roomy = output.room;
    output.room = [](HostOutput::Bytes bytes, const HostOutput::Waiting&) {
        return Bytes{0x80, 61, 0} == copyOf(bytes) ? HostOutput::Room::enough : HostOutput::Room::full;
    };
    endNotes();
    renderer.beginPassing(16, output, BlockRenderer::Delivery::asItComes);
    renderer.pass(3, Bytes{0x80, 60, 0});
    renderer.pass(3, Bytes{0x80, 61, 0});
    EXPECT_EQ(renderer.end(), noErr);
    EXPECT_EQ(output.take(), (Timed{{3, {0x80, 61, 0}}}));
    output.room = roomy;
    EXPECT_EQ(block(16), (Timed{{0, {0x80, 60, 64}}, {0, {0x80, 62, 64}}}));
}

TEST_F(EndOfNotesTest, APanicEndsAllThatSoundsAndSilencesTheChannelsThatWereUsed) {
    block(16, {{0, {0x91, 60, 1}}, {0, {0x91, 61, 1}}, {0, {0xB1, 66, 64}}, {0, {0xCF, 3}}});
    renderer.requests().ask(Kind::panic);
    EXPECT_EQ(block(16, {{0, {0x90, 70, 1}}}), (Timed{{0, {0x81, 60, 64}},
                                                      {0, {0x81, 61, 64}},
                                                      {0, {0xB1, 64, 0}},
                                                      {0, {0xB1, 66, 0}},
                                                      {0, {0xB1, 67, 0}},
                                                      {0, {0xB1, 123, 0}},
                                                      {0, {0xB1, 120, 0}},
                                                      {0, {0xBF, 64, 0}},
                                                      {0, {0xBF, 66, 0}},
                                                      {0, {0xBF, 67, 0}},
                                                      {0, {0xBF, 123, 0}},
                                                      {0, {0xBF, 120, 0}},
                                                      {0, {0x90, 70, 1}}}));
    EXPECT_EQ(renderer.requests().takeAnswer(), (PanicResult{2, 1, 0}));
    EXPECT_EQ(renderer.requests().takeAnswer(), std::nullopt);
}

TEST_F(EndOfNotesTest, APanicDiscardsWhatWaits) {
    processor.sampleRate = 1000;
    processor.setRules({rule(onNoteOn(), send(noteOn(0, 61, 1), 20))});
    block(16, {{0, {0x80, 1, 1}}, {5, {0x90, 60, 1}}, {6, {0x90, 62, 1}}});
    processor.send(noteOn(0, 1, 1));
    renderer.requests().ask(Kind::panic);
    EXPECT_EQ(block(16), (Timed{{0, {0x80, 60, 64}},
                                {0, {0x80, 62, 64}},
                                {0, {0xB0, 64, 0}},
                                {0, {0xB0, 66, 0}},
                                {0, {0xB0, 67, 0}},
                                {0, {0xB0, 123, 0}},
                                {0, {0xB0, 120, 0}}}));
    EXPECT_EQ(renderer.requests().takeAnswer(), (PanicResult{2, 0, 3}));
    EXPECT_EQ(block(64), Timed());
}

TEST_F(EndOfNotesTest, APanicForWhichThereIsLittleRoomIsAnsweredOnceAllOfItHasLeft) {
    block(16, {{0, {0x90, 60, 1}}, {0, {0x90, 61, 1}}});
    roomFor(3);
    renderer.requests().ask(Kind::panic);
    EXPECT_EQ(block(16), (Timed{{0, {0x80, 60, 64}}, {0, {0x80, 61, 64}}, {0, {0xB0, 64, 0}}}));
    EXPECT_EQ(renderer.requests().takeAnswer(), std::nullopt);
    renderer.requests().ask(Kind::panic);
    EXPECT_EQ(block(16), (Timed{{0, {0xB0, 64, 0}}, {0, {0xB0, 66, 0}}, {0, {0xB0, 67, 0}}}));
    EXPECT_EQ(block(16), (Timed{{0, {0xB0, 123, 0}}, {0, {0xB0, 120, 0}}}));
    EXPECT_EQ(renderer.requests().takeAnswer(), (PanicResult{2, 0, 0}));
}

TEST_F(EndOfNotesTest, RulesCountAsLoadedOnceMoreWhenThatIsAskedFor) {
    processor.setRules({rule(onLoad(), send(controlChange(0, 7, 5)))});
    EXPECT_EQ(block(16), (Timed{{0, {0xB0, 7, 5}}}));
    EXPECT_EQ(block(16), Timed());
    renderer.requests().ask(Kind::load);
    EXPECT_EQ(block(16), (Timed{{0, {0xB0, 7, 5}}}));
    EXPECT_EQ(block(16), Timed());
}

TEST_F(EndOfNotesTest, CancellingAllThatWaitsEndsNoNoteAndKeepsWhatIsSentByHand) {
    processor.sampleRate = 1000;
    processor.setRules({rule(onNoteOn(), send(noteOn(0, 61, 1), 20))});
    block(16, {{5, {0x90, 60, 1}}});
    EXPECT_EQ(renderer.waitingOutputs(), 1U);
    processor.send(noteOn(0, 1, 1));
    renderer.requests().ask(Kind::cancelAll);
    EXPECT_EQ(block(64), (Timed{{0, {0x90, 1, 1}}}));
    EXPECT_EQ(renderer.waitingOutputs(), 0U);
}

/// What a receiver makes of the messages: written as plainly as can be.
class Receiver {
public:
    void hear(const Bytes& bytes) {
        const auto key = std::pair(bytes[0] & 0x0F, bytes.size() > 1 ? bytes[1] : std::uint8_t{0});
        if (bytes.size() < 3 || bytes[1] > 127) {
            return;
        }
        switch (bytes[0] & 0xF0) {
        case 0x90:
            if (bytes[2] != 0) {
                sounding.insert(key);
                return;
            }
            [[fallthrough]];
        case 0x80: sounding.erase(key); break;
        case 0xB0:
            if (bytes[1] == 64 || bytes[1] == 66 || bytes[1] == 67) {
                (bytes[2] >= 64) ? static_cast<void>(down.insert(key)) : static_cast<void>(down.erase(key));
            }
            break;
        default: break;
        }
    }

    std::set<std::pair<int, std::uint8_t>> sounding;
    std::set<std::pair<int, std::uint8_t>> down;
};

/// Plays random rules, messages, rooms and requests, and hears what leaves.
class PanicSimulation {
public:
    explicit PanicSimulation(unsigned seed) : random_(seed), rules_(seed) {
        processor_.sampleRate = 1000;
        output_.room = [this](HostOutput::Bytes, const HostOutput::Waiting& waiting) {
            return output_.sent.size() + waiting.messages < room_ ? HostOutput::Room::enough
                                                                  : HostOutput::Room::full;
        };
    }

    void playBlock() {
        room_ = below(8) == 0 ? below(4) : 100;
        if (below(50) == 0) {
            processor_.setRules(rules_.list());
        }
        const bool passes = below(20) == 0;
        const auto delivery =
            below(2) == 0 ? BlockRenderer::Delivery::asItComes : BlockRenderer::Delivery::atTheEnd;
        passes ? renderer_.beginPassing(64, output_, delivery) : renderer_.begin(64, output_, delivery);
        std::uint32_t offset = 0;
        for (auto count = below(6); count > 0; --count) {
            offset += below(12);
            passes ? renderer_.pass(offset, message()) : renderer_.receive(offset, message());
        }
        end();
    }

    /// Until it is answered, nobody plays: how much sounded, and what was said of it.
    std::pair<PanicResult, PanicResult> panic() {
        const PanicResult expected{receiver.sounding.size(), receiver.down.size(),
                                   processor_.pendingDelayedMessages()};
        renderer_.requests().ask(Kind::panic);
        for (;;) {
            room_ = 1 + below(100);
            renderer_.begin(64, output_);
            end();
            if (const auto answer = renderer_.requests().takeAnswer()) {
                return {expected, *answer};
            }
        }
    }

    Receiver receiver;

private:
    unsigned below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }

    Bytes message() {
        constexpr std::array<std::uint8_t, 5> statuses{0x80, 0x90, 0x90, 0xB0, 0xE0};
        constexpr std::array<std::uint8_t, 4> controllers{7, 64, 66, 67};
        const auto status = static_cast<std::uint8_t>(statuses[below(statuses.size())] + below(2));
        const auto data1 = (status & 0xF0) == 0xB0 ? controllers[below(controllers.size())]
                                                   : static_cast<std::uint8_t>(below(3));
        return {status, data1, static_cast<std::uint8_t>(below(2) * 100)};
    }

    void end() {
        static_cast<void>(renderer_.end());
        for (const auto& [offset, bytes] : output_.take()) {
            receiver.hear(bytes);
        }
    }

    std::mt19937 random_;
    RandomRules rules_;
    RuleProcessor processor_;
    LogCallback logInput_;
    LogCallback logOutput_;
    BlockRenderer renderer_{processor_, logInput_, logOutput_, HostTransport()};
    TestOutput output_;
    std::size_t room_ = 100;
};

TEST(Panic, LeavesNoNoteOnAfterTenThousandRandomBlocks) {
    std::size_t sounded = 0;
    for (unsigned seed = 1; seed <= 20; ++seed) {
        PanicSimulation simulation(seed);
        for (int block = 1; block <= 10000; ++block) {
            simulation.playBlock();
            if (block % 500 != 0) {
                continue;
            }
            const auto [expected, answer] = simulation.panic();
            ASSERT_EQ(answer, expected) << "seed " << seed << ", block " << block;
            ASSERT_TRUE(simulation.receiver.sounding.empty()) << "seed " << seed << ", block " << block;
            ASSERT_TRUE(simulation.receiver.down.empty()) << "seed " << seed << ", block " << block;
            sounded += expected.notes;
        }
    }
    EXPECT_GT(sounded, 400U);
}

}  // namespace
}  // namespace quillo
