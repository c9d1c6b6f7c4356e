// SPDX-License-Identifier: GPL-3.0-or-later
// A session is asked why, and its answers are held against what it does and what `explain` says.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <span>
#include <sstream>

#include "analysis/ExplanationText.hpp"
#include "midi/MessageLength.hpp"
#include "platform/HexText.hpp"
#include "session/Session.hpp"
#include "support/RandomRules.hpp"
#include "support/TestOutput.hpp"

namespace quillo {
namespace {

using namespace test;

/// A frame is a millisecond, and a block longer than any delay of random rules.
constexpr std::uint32_t framesOfABlock = 3000;

/// What leaves: when, in milliseconds, and the bytes in hexadecimal.
using Sent = std::vector<std::pair<std::uint32_t, std::string>>;

/// What leaves at one time stays in its order.
Sent inOrderOfTime(const Sent& sent) {
    Sent ordered;
    for (const auto& message : sent) {
        ordered.insert(std::ranges::upper_bound(ordered, message.first, {}, &Sent::value_type::first),
                       message);
    }
    return ordered;
}

/// What the reasons say was sent, in order of time.
Sent sentAccordingTo(const std::vector<RuleReason>& reasons) {
    Sent sent;
    for (const auto& reason : reasons) {
        if (!reason.fired) {
            continue;
        }
        auto words = reason.words.substr(std::string("sent ").size());
        words = words.substr(0, words.find(", and consumed it"));
        const auto after = words.find(" after ");
        const auto delay = after == std::string::npos ? 0 : std::stoul(words.substr(after + 7));
        std::istringstream messages(words.substr(0, std::min(after, words.find(" at once"))));
        for (std::string bytes; std::getline(messages >> std::ws, bytes, ',');) {
            sent.emplace_back(delay, bytes);
        }
    }
    return inOrderOfTime(sent);
}

/// A session over random rules, behind what they send on load.
class Asked {
public:
    explicit Asked(std::vector<Rule> rules) : rules_(std::move(rules)) {
        static_cast<void>(session_.setSampleRate(1000));
        session_.install(rules_);
        play([](BlockRenderer&) {});
    }

    /// The events that can come in: complete messages, and changes of the transport.
    void expectTruth(const EventLogEntryVariants& event) {
        const auto reasons = session_.why(event);
        expectWordsOfExplain(reasons, askedEvent(event));
        auto sent = sentAccordingTo(reasons);
        const bool consumed = std::ranges::any_of(reasons, &RuleReason::consumed);
        if (event.midi() != nullptr && !consumed) {
            const auto atOnce = std::ranges::upper_bound(sent, 0U, {}, &Sent::value_type::first);
            sent.insert(atOnce, {0, hexText(event.midi()->message.bytes(), HexCase::lower)});
        }
        EXPECT_EQ(played(event), sent);
    }

private:
    template <class Events>
    Sent play(Events events) {
        TestOutput output;
        session_.renderer().begin(framesOfABlock, output);
        events(session_.renderer());
        EXPECT_EQ(session_.renderer().end(), noErr);
        Sent sent;
        for (const auto& [offset, bytes] : output.sent) {
            sent.emplace_back(offset, hexText(bytes, HexCase::lower));
        }
        return sent;
    }

    Sent played(const EventLogEntryVariants& event) {
        if (const auto* midi = event.midi()) {
            return play([&](BlockRenderer& renderer) { renderer.receive(0, midi->message.bytes()); });
        }
        return playedChange(event.host()->trigger);
    }

    /// The transport stands at first; what is to stop is started before.
    Sent playedChange(HostTransportTriggerVariantsV2 change) {
        using Change = HostTransportTriggerVariantsV2;
        if (change == Change::Stop) {
            playedChange(Change::Start);
            return play([](BlockRenderer& renderer) { renderer.reportTransport(0, {}); });
        }
        const double position = change == Change::Start ? 0 : 100;
        return play(
            [&](BlockRenderer& renderer) { renderer.reportTransport(0, {.isMoving = true}, position); });
    }

    void expectWordsOfExplain(const std::vector<RuleReason>& reasons, const AskedEvent& event) {
        EngineProbe probe(rules_);
        const auto text = explanationText(rules_, event, explain(probe, event));
        ASSERT_EQ(reasons.size(), rules_.size());
        std::size_t from = 0;
        for (const auto& reason : reasons) {
            const auto line = reason.verdict + std::string(13 - reason.verdict.size(), ' ') + reason.words;
            from = text.find(line + "\n", from);
            ASSERT_NE(from, std::string::npos) << line << " is not in\n" << text;
        }
    }

    std::vector<Rule> rules_;
    Session session_;
};

EventLogEntryVariants completeMessage(RandomRules& random) {
    for (;;) {
        const auto bytes = random.message();
        const std::array all{bytes.status, bytes.data1, bytes.data2};
        const auto message = std::span(all).first(messageLength(bytes.status));
        if (isCompleteShortMessage(message)) {
            return EventLogEntryVariants::MIDI{MIDIMessage::inlineCopyOf(message)};
        }
    }
}

TEST(Why, AgreesWithTheEngineAndWithExplainOnAThousandListsAndEvents) {
    for (unsigned seed = 0; seed < 1000; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomRules random(seed);
        Asked asked(random.list());
        asked.expectTruth(EventLogEntryVariants::Host{random.transport()});
        for (int count = 0; count < 3; ++count) {
            asked.expectTruth(completeMessage(random));
        }
        if (testing::Test::HasFailure()) {
            return;
        }
    }
}

TEST(Why, AnswersForTheRulesAsTheyAreNow) {
    Session session;
    const EventLogEntryVariants note = EventLogEntryVariants::MIDI{MIDIMessage{0x90, 60, 1}};
    EXPECT_TRUE(session.why(note).empty());
    session.install({rule(onNoteOff(), send(noteOn(1, 2, 3)))});
    EXPECT_EQ(session.why(note)[0].text(), "passed over: it waits for Note Off, this is a Note On");
    session.onRulesChanged({rule(onNoteOn(), send(noteOn(1, 2, 3)))});
    EXPECT_EQ(session.why(note)[0].text(), "fired: sent 91 02 03 at once");
}

TEST(Why, SaysOfARuleThatIsSwitchedOffThatItIs) {
    Session session;
    const auto answer = rule(onNoteOn(), send(noteOn(1, 2, 3)));
    session.install({answer}, {{0, answer}, {1, answer}});
    const auto reasons = session.why(EventLogEntryVariants::MIDI{MIDIMessage{0x90, 60, 1}});
    ASSERT_EQ(reasons.size(), 3U);
    EXPECT_EQ(reasons[0].text(), "switched off");
    EXPECT_TRUE(reasons[1].fired);
    EXPECT_EQ(reasons[2].text(), "switched off");
}

}  // namespace
}  // namespace quillo
