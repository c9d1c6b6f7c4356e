// SPDX-License-Identifier: GPL-3.0-or-later
// The scripts of all formats, played through the plug-in that was built.
#include <gtest/gtest.h>

#include <optional>

#include "hosts/formats/FormatScript.hpp"
#include "hosts/lv2/LV2TestHost.hpp"

namespace quillo {
namespace {

using namespace test;

/// When a host tells its transport, and how much of it.
enum class Reporting { wholeChanges, onlyWhatChanges, everyBlock };

/// Writes a script's transport into the blocks of a host.
class Transport {
public:
    Transport(const FormatScript& script, Reporting reporting)
        : reporting_(reporting), next_(script.transport.begin()), end_(script.transport.end()) {}

    /// When it changes next, if before `end`.
    [[nodiscard]] std::optional<SampleTime> changeBefore(SampleTime end) const {
        return next_ != end_ && next_->time < end ? std::optional(next_->time) : std::nullopt;
    }

    void addChange(LV2Sequence& events, std::int64_t offset) {
        const auto expected = position(next_->time);
        const bool sameFrame = reporting_ == Reporting::onlyWhatChanges && expected == next_->position;
        const bool sameSpeed = reporting_ == Reporting::onlyWhatChanges && now_.moves == next_->moves;
        now_ = *next_++;
        if (!sameFrame || !sameSpeed) {
            events.addPosition(offset, sameSpeed ? std::nullopt : std::optional(now_.moves ? 1.0 : 0.0),
                               sameFrame ? std::nullopt
                                         : std::optional(static_cast<std::int64_t>(now_.position)));
        }
    }

    void addBlock(LV2Sequence& events, SampleTime time) const {
        if (reporting_ == Reporting::everyBlock && now_.moves) {
            events.addPosition(0, 1.0, static_cast<std::int64_t>(position(time)));
        }
    }

private:
    [[nodiscard]] double position(SampleTime time) const {
        return now_.position + (now_.moves ? static_cast<double>(time - now_.time) : 0.0);
    }

    Reporting reporting_;
    ScriptTransport now_;
    std::vector<ScriptTransport>::const_iterator next_;
    std::vector<ScriptTransport>::const_iterator end_;
};

std::vector<ScriptMessage> playedByThePlugin(const FormatScript& script,
                                             const std::vector<std::uint32_t>& blocks,
                                             Reporting reporting = Reporting::wholeChanges,
                                             const char* uri = lv2Plain) {
    LV2TestHost host(uri);
    host.capacity = 8192;
    EXPECT_EQ(host.load(script.state), LV2_STATE_SUCCESS);
    host.activate();
    Transport transport(script, reporting);
    auto message = script.messages.begin();
    LV2Sequence events;
    for (const auto frames : blocks) {
        const auto end = host.now + frames;
        events.clear();
        if (transport.changeBefore(host.now + 1) != host.now) {
            transport.addBlock(events, host.now);
        }
        for (;;) {
            const auto change = transport.changeBefore(end);
            const bool sends = message != script.messages.end() && message->time < end;
            if (change && (!sends || *change <= message->time)) {
                transport.addChange(events, *change - host.now);
            } else if (sends) {
                events.addMIDI(message->time - host.now, message->bytes);
                ++message;
            } else {
                break;
            }
        }
        host.run(frames, events);
    }
    return host.take();
}

class LV2FormatScripts : public testing::TestWithParam<FormatScript> {};

INSTANTIATE_TEST_SUITE_P(All, LV2FormatScripts, testing::ValuesIn(formatScripts()),
                         [](const auto& script) { return script.param.name; });

TEST_P(LV2FormatScripts, ThePluginSendsWhatTheUnitSendsWhateverTheLengthsOfTheBlocks) {
    expectAsTheUnit(GetParam(), [](const auto& blocks) { return playedByThePlugin(GetParam(), blocks); });
}

TEST_P(LV2FormatScripts, ATransportOfWhichOnlyWhatChangesIsToldIsTheSame) {
    const auto& script = GetParam();
    for (const std::uint32_t length : {1U, 64U, 8192U}) {
        EXPECT_EQ(playedByThePlugin(script, evenBlocks(script.end, length), Reporting::onlyWhatChanges),
                  playedByTheUnit(script))
            << length;
    }
}

TEST_P(LV2FormatScripts, ATransportThatIsToldInEveryRollingBlockAddsNothing) {
    const auto& script = GetParam();
    for (const std::uint32_t length : {1U, 64U, 8192U}) {
        EXPECT_EQ(playedByThePlugin(script, evenBlocks(script.end, length), Reporting::everyBlock),
                  playedByTheUnit(script))
            << length;
    }
}

TEST_P(LV2FormatScripts, TheStereoVariantSendsTheSame) {
    const auto& script = GetParam();
    EXPECT_EQ(
        playedByThePlugin(script, randomBlocks(script.end, 2000, 7), Reporting::wholeChanges, lv2Stereo),
        playedByTheUnit(script));
}

}  // namespace
}  // namespace quillo
