// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "audiounit/MIDIQuilloAUAudioUnit.hpp"
#include "audiounit/platform/RenderEventList.hpp"
#include "realtime/CallCounter.hpp"

namespace quillo::test {

/// A host with one unit that keeps the real-time contract itself: all that it needs in a cycle it has made
/// before. It counts what it is given, and in each cycle what the unit must not do.
///
/// One thread at a time may use it; the unit's processor is open to others meanwhile.
class RealTimeHost {
public:
    static constexpr AUAudioFrameCount cycleLength = 512;
    static constexpr std::size_t mostEvents = 256;

    RealTimeHost();
    RealTimeHost(const RealTimeHost&) = delete;
    RealTimeHost& operator=(const RealTimeHost&) = delete;

    const std::shared_ptr<MIDIQuilloAUAudioUnit> unit;

    /// What the transport answers from now on.
    void moveTransport(AUHostTransportStateFlags flags, double position) QUILLO_REALTIME;

    /// Adds an event to the next cycle, which has room for `mostEvents` in all.
    void push(std::span<const std::uint8_t> bytes) QUILLO_REALTIME;

    /// Renders the next cycle, with the events that were pushed.
    OSStatus render() QUILLO_REALTIME;

    /// Lets so many frames pass without a cycle.
    void skip(SampleTime frames) QUILLO_REALTIME { now_ += frames; }

    /// What the unit did in all cycles so far that it must not do.
    [[nodiscard]] const CallCounts& calls() const { return calls_; }

    /// How many messages with this status byte, on channel bits of any kind, the unit has sent.
    [[nodiscard]] std::size_t received(std::uint8_t status) const { return received_[status]; }
    [[nodiscard]] std::size_t longestReceived() const { return longestReceived_; }

    /// How many changes of the transport the unit has logged.
    [[nodiscard]] std::size_t logged(HostTransportTriggerVariantsV2 trigger) const {
        return logged_[static_cast<std::size_t>(trigger)];
    }

    /// Lets go of the messages that were logged last, which it holds as an editor would.
    void forgetLog() QUILLO_REALTIME { lastLogged_.fill({}); }

private:
    OSStatus receive(std::span<const std::uint8_t> bytes) QUILLO_REALTIME;
    void log(const EventLogEntry& entry) QUILLO_REALTIME;

    AUInternalRenderBlock block_;
    RenderEventList events_{mostEvents};
    SampleTime now_ = 0;
    AUHostTransportStateFlags flags_ = 0;
    double position_ = 0.0;
    CallCounts calls_;
    std::array<std::size_t, 256> received_{};
    std::size_t longestReceived_ = 0;
    std::array<std::size_t, 3> logged_{};
    std::array<MIDIMessage, 64> lastLogged_{};
    std::size_t nextLogged_ = 0;
};

}  // namespace quillo::test
