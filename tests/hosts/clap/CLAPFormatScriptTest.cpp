// SPDX-License-Identifier: GPL-3.0-or-later
// The scripts of all formats, played through the plug-in that was built.
#include <gtest/gtest.h>

#include <algorithm>

#include "hosts/clap/CLAPTestHost.hpp"
#include "hosts/formats/FormatScript.hpp"

namespace quillo {
namespace {

using namespace test;

/// How a host tells its transport, and its notes.
struct Way {
    bool everyBlock = false;  ///< where the transport is, at the start of each block
    bool beats = false;       ///< its position in beats
    bool notes = false;       ///< notes as note events
};

/// The transport of a script as a host knows it.
class Transport {
public:
    explicit Transport(const FormatScript& script, bool beats) : script_(script), beats_(beats) {}

    /// What it is at this time.
    [[nodiscard]] clap_event_transport_t at(SampleTime time) const {
        ScriptTransport latest;
        for (const auto& change : script_.transport) {
            latest = change.time <= time ? change : latest;
        }
        const auto moved = latest.moves ? static_cast<double>(time - latest.time) : 0.0;
        return clapTransport(latest.moves ? CLAP_TRANSPORT_IS_PLAYING : 0, latest.position + moved, beats_);
    }

    [[nodiscard]] const std::vector<ScriptTransport>& changes() const { return script_.transport; }

private:
    const FormatScript& script_;
    bool beats_;
};

bool isNote(const Bytes& bytes) {
    return bytes[0] < 0xA0;
}

void addMessage(CLAPEvents& events, std::uint32_t offset, const Bytes& bytes, const Way& way) {
    if (way.notes && isNote(bytes)) {
        const auto type = bytes[0] < 0x90 ? CLAP_EVENT_NOTE_OFF : CLAP_EVENT_NOTE_ON;
        events.addNote(static_cast<std::uint16_t>(type), offset, bytes[0] & 0x0F, bytes[1], bytes[2] / 127.0);
    } else {
        events.addMIDI(offset, bytes);
    }
}

std::vector<ScriptMessage> playedByThePlugin(const FormatScript& script,
                                             const std::vector<std::uint32_t>& blocks, const Way& way) {
    CLAPTestHost host;
    EXPECT_TRUE(host.load(script.state));
    host.start(*std::ranges::max_element(blocks));
    const Transport transport(script, way.beats);
    auto message = script.messages.begin();
    auto change = script.transport.begin();
    for (const auto frames : blocks) {
        CLAPEvents events;
        const auto end = host.now + frames;
        const auto offset = [&](SampleTime time) { return static_cast<std::uint32_t>(time - host.now); };
        for (;;) {
            const bool changes = change != script.transport.end() && change->time < end;
            const bool sends = message != script.messages.end() && message->time < end;
            if (changes && (!sends || change->time <= message->time)) {
                events.addTransport(offset(change->time), transport.at(change->time));
                ++change;
            } else if (sends) {
                addMessage(events, offset(message->time), message->bytes, way);
                ++message;
            } else {
                break;
            }
        }
        const auto now = transport.at(host.now);
        EXPECT_NE(host.process(frames, events, way.everyBlock ? &now : nullptr), CLAP_PROCESS_ERROR);
    }
    return host.take();
}

class CLAPFormatScripts : public testing::TestWithParam<FormatScript> {
protected:
    static void expectAsTheUnit(const Way& way) {
        test::expectAsTheUnit(GetParam(),
                              [&](const auto& blocks) { return playedByThePlugin(GetParam(), blocks, way); });
    }
};

INSTANTIATE_TEST_SUITE_P(All, CLAPFormatScripts, testing::ValuesIn(formatScripts()),
                         [](const auto& script) { return script.param.name; });

TEST_P(CLAPFormatScripts, ThePluginSendsWhatTheUnitSendsWhateverTheLengthsOfTheBlocks) {
    expectAsTheUnit({});
}

TEST_P(CLAPFormatScripts, ATransportThatIsToldInEveryBlockAddsNothing) {
    expectAsTheUnit({.everyBlock = true});
}

TEST_P(CLAPFormatScripts, ATransportThatIsToldInBeatsInEveryBlockAddsNothing) {
    expectAsTheUnit({.everyBlock = true, .beats = true});
}

TEST_P(CLAPFormatScripts, NotesThatComeAsNoteEventsAreTheSameNotes) {
    expectAsTheUnit({.notes = true});
}

TEST(CLAPFormatScript, ATransportThatIsToldAtTheStartsOfBlocksAloneIsHeardThere) {
    const auto script = formatScript("Transport");
    CLAPTestHost host;
    ASSERT_TRUE(host.load(script.state));
    host.start();
    const Transport transport(script, false);
    CLAPEvents events;
    for (SampleTime time = 0; time < script.end;) {
        auto end = script.end;
        for (const auto& change : script.transport) {
            end = change.time > time ? std::min(end, change.time) : end;
        }
        const auto now = transport.at(time);
        events.clear();
        for (const auto& message : script.messages) {
            if (message.time >= time && message.time < end) {
                events.addMIDI(static_cast<std::uint32_t>(message.time - time), message.bytes);
            }
        }
        host.process(static_cast<std::uint32_t>(end - time), events, &now);
        time = end;
    }
    EXPECT_EQ(host.take(), playedByTheUnit(script));
}

}  // namespace
}  // namespace quillo
