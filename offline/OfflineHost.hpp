// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "engine/RuleProcessor.hpp"
#include "engine/SampleTime.hpp"
#include "log/EventLogEntry.hpp"
#include "offline/Score.hpp"
#include "platform/OSStatus.hpp"
#include "rules/Rule.hpp"

namespace quillo {

/// Plays messages through rules as fast as it can, in cycles that follow one another from sample 0 on. What
/// comes out, in order of time, does not depend on the cycles' length, unless outputs are dropped: what is
/// due in its own cycle never waits.
class OfflineHost {
public:
    struct Settings {
        std::uint32_t sampleRate = 48000;  ///< samples per second
        std::uint32_t block = 512;         ///< the longest cycle, in samples
        double tail = 60;                  ///< how long delayed outputs are waited for at the end, in seconds
    };

    /// Throws the `FatalError` of rules that cannot be compiled.
    OfflineHost(const Settings& settings, std::vector<Rule> rules);

    /// Calls these with each event that comes in, before the rules see it, and each message that leaves.
    using Log = std::function<void(const EventLogEntry&)>;
    void setLogs(Log input, Log output);

    /// Calls this after each cycle until the transport stops, with how much of the way is done: at last 1.
    void setProgress(std::function<void(double)> progress) { progress_ = std::move(progress); }

    struct Performance {
        std::vector<TimedMessage> outputs;  ///< in the order in which they were sent
        std::size_t cutOff = 0;             ///< delayed outputs that were due behind the tail
        std::uint64_t lost = 0;             ///< delayed outputs for which too many others waited
    };

    /// Plays `messages`, which are in order of their times and before `end`. The transport moves from sample
    /// 0 to `end` and then stands still until nothing is delayed any more: what is due no later than the tail
    /// after `end` is waited for. Once only. Throws the `FatalError` that a cycle has ended with.
    [[nodiscard]] Performance play(std::span<const TimedMessage> messages, SampleTime end);

private:
    void playMoving(std::span<const TimedMessage> messages, SampleTime end);
    void playTail(SampleTime end);

    /// Renders the cycle from where the host is up to `end`. Returns the messages that lie behind it.
    std::span<const TimedMessage> renderCycle(std::span<const TimedMessage> messages, SampleTime end);

    /// Goes to the beginning of the cycle that holds `time`, or the first delayed output when that is due
    /// earlier. The cycles before it have no events and nothing to send: running them would change nothing.
    void skipCyclesBefore(SampleTime time);

    OSStatus keep(SampleTime time, std::span<const MIDIMessage> sent);
    [[nodiscard]] std::size_t delayedOutputs();

    Settings settings_;
    RuleProcessor processor_;
    Log logInput_ = [](const EventLogEntry&) {};
    Log logOutput_ = [](const EventLogEntry&) {};
    std::function<void(double)> progress_ = [](double) {};
    std::vector<TimedMessage> outputs_;
    SampleTime position_ = 0;
    std::optional<HostTransportTriggerVariantsV2> change_;  ///< of the transport, for the next cycle
};

}  // namespace quillo
