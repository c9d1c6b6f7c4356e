// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <limits>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "audiounit/MIDIQuilloAUAudioUnit.hpp"
#include "audiounit/platform/RenderEventList.hpp"
#include "support/OutputRecorder.hpp"

namespace quillo::test {

inline std::shared_ptr<MIDIQuilloAUAudioUnit> makeUnit() {
    return std::get<std::shared_ptr<MIDIQuilloAUAudioUnit>>(
        MIDIQuilloAUAudioUnit::create(midiQuilloComponent));
}

/// A host with one unit. It keeps, in the order in which they happen, what the unit logs and sends: "in [10]
/// 90 3c 64", "midi 10: 90 3c 64", "refused 10: 90 3c 64", "out [10] 90 3c 64".
class TestHost {
public:
    TestHost() {
        unit->logInput =
            WithoutDeadline([this](const EventLogEntry& e) { lines.push_back("in " + text(e)); });
        unit->logOutput =
            WithoutDeadline([this](const EventLogEntry& e) { lines.push_back("out " + text(e)); });
        offerOutput();
    }

    std::shared_ptr<MIDIQuilloAUAudioUnit> unit = makeUnit();
    std::vector<std::string> lines;

    /// What the transport block answers, once `offerTransport` was called.
    AUHostTransportStateFlags flags = 0;
    double position = 0.0;

    /// How many messages are still taken before one is answered with `failure`.
    std::size_t acceptedBeforeFailure = std::numeric_limits<std::size_t>::max();
    OSStatus failure = -1;

    void offerOutput() {
        unit->MIDIOutputEventBlock = WithoutDeadline(
            [this](AUEventSampleTime time, std::uint8_t, std::span<const std::uint8_t> bytes) {
                const bool refused = acceptedBeforeFailure-- == 0;
                lines.push_back((refused ? "refused " : "midi ") + describe(time, bytes));
                return refused ? failure : noErr;
            });
    }

    void offerTransport() {
        unit->transportStateBlock = [this](AUHostTransportStateFlags* currentFlags, double* currentPosition,
                                           double*, double*) {
            *currentFlags = flags;
            *currentPosition = position;
            return true;
        };
    }

    OSStatus render(double time, AUAudioFrameCount frames, const RenderEventList& events) {
        return unit->internalRenderBlock()(AudioTimeStamp{time}, frames, events.head());
    }

    /// Renders a cycle with these MIDI events: sample time and bytes.
    OSStatus render(double time, AUAudioFrameCount frames,
                    const std::vector<std::pair<SampleTime, Bytes>>& messages = {}) {
        RenderEventList events(messages.size());
        for (const auto& [at, bytes] : messages) {
            if (!events.tryPushMIDI(at, bytes)) {
                return -1;
            }
        }
        return render(time, frames, events);
    }

    /// The lines so far, which are then forgotten.
    std::vector<std::string> take() { return std::exchange(lines, {}); }

private:
    static std::string describe(AUEventSampleTime time, std::span<const std::uint8_t> bytes) {
        const auto line = text({time, EventLogEntryVariants::MIDI{MIDIMessage::copyOf(bytes)}});
        const auto stampEnd = line.find(']');
        return line.substr(1, stampEnd - 1) + ":" + line.substr(stampEnd + 1);
    }
};

}  // namespace quillo::test
