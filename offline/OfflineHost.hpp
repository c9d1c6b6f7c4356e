// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "audiounit/MIDIQuilloAUAudioUnit.hpp"
#include "audiounit/platform/RenderEventList.hpp"
#include "engine/SampleTime.hpp"
#include "offline/TimedMessage.hpp"
#include "platform/Data.hpp"

namespace quillo {

/// Plays messages through a unit of its own as fast as it can, in cycles that follow one another from sample
/// 0 on. What comes out, in order of time, does not depend on the cycles' length.
class OfflineHost {
public:
    struct Settings {
        std::uint32_t sampleRate = 48000;  ///< samples per second
        std::uint32_t block = 512;         ///< the longest cycle, in samples
        double tail = 60;                  ///< how long delayed outputs are waited for at the end, in seconds
    };

    /// Makes the unit and loads it with the state document `preset`. Throws a `FatalError` where the unit
    /// would end a host.
    OfflineHost(const Settings& settings, const Data& preset);

    /// Calls these with each entry of the unit's logs, as it happens.
    using Log = std::function<void(const EventLogEntry&)>;
    void setLogs(const Log& input, const Log& output);

    /// Calls this after each cycle until the transport stops, with how much of the way is done: at last 1.
    void setProgress(std::function<void(double)> progress) { progress_ = std::move(progress); }

    struct Performance {
        std::vector<TimedMessage> outputs;  ///< in the order in which the unit sent them
        std::size_t cutOff = 0;             ///< delayed outputs that were due behind the tail
    };

    /// Plays `messages`, which are in order of their times and before `end`. The transport moves from sample
    /// 0 to `end` and then stands still until nothing is delayed any more: what is due no later than the tail
    /// after `end` is waited for. Once only. Throws a `FatalError` like the constructor.
    [[nodiscard]] Performance play(std::span<const TimedMessage> messages, SampleTime end);

private:
    void playMoving(std::span<const TimedMessage> messages, SampleTime end);
    void playTail(SampleTime end);

    /// Renders the cycle from where the host is up to `end`. Returns the messages that lie behind it.
    std::span<const TimedMessage> renderCycle(std::span<const TimedMessage> messages, SampleTime end);

    /// Goes to the beginning of the cycle that holds `time`, or the first delayed output when that is due
    /// earlier. The cycles before it have no events and nothing to send: running them would change nothing.
    void skipCyclesBefore(SampleTime time);

    [[nodiscard]] std::size_t delayedOutputs() const;

    Settings settings_;
    std::shared_ptr<MIDIQuilloAUAudioUnit> unit_;
    AUInternalRenderBlock renderBlock_;
    RenderEventList events_;
    std::function<void(double)> progress_ = [](double) {};
    std::vector<TimedMessage> outputs_;
    SampleTime position_ = 0;
    bool isMoving_ = false;
};

}  // namespace quillo
