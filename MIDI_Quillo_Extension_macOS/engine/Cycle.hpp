// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "engine/CompiledRules.hpp"
#include "engine/MIDIRuleInternal.hpp"
#include "engine/OutputFunction.hpp"
#include "engine/RuleChain.hpp"
#include "engine/SampleTime.hpp"
#include "platform/DispatchQueue.hpp"
#include "platform/OSStatus.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

class RuleProcessor;

/// One render cycle, from its first sample time up to, and not including, its end. Making one enters the
/// processor's queue, once and until the cycle goes, and sends what is due by itself: the on-load rules'
/// outputs in the processor's first cycle, what was sent by hand, and the delayed outputs. Then it takes
/// events, in order of time:
///
///     Cycle cycle(processor, output, start, start + frames);
///     cycle.transport(start, HostTransportTriggerVariantsV2::Start);
///     cycle.midi(start + 17, bytes);
///     return cycle.status();
///
/// The first status other than `noErr` ends it: what comes after is ignored, and returns this status.
///
/// [render], one cycle of a processor at a time, inside of which none of the processor's operations may be
/// called.
class Cycle {
public:
    Cycle(RuleProcessor& processor, OutputFunction output, SampleTime start, SampleTime end) QUILLO_REALTIME;

    /// Fires the rules that wait for this change of the host's transport.
    OSStatus transport(SampleTime at, HostTransportTriggerVariantsV2 trigger) QUILLO_REALTIME;

    /// Runs a message through the rules and forwards it, after their immediate outputs, unless one consumes
    /// it. Only `length` bytes are forwarded, at most three; rules see what lies behind them too.
    OSStatus midi(SampleTime at, const std::array<std::uint8_t, 3>& data, std::size_t length) QUILLO_REALTIME;

    /// The same with a message of at most three bytes; rules see zeros behind a shorter one.
    OSStatus midi(SampleTime at, std::span<const std::uint8_t> bytes) QUILLO_REALTIME;

    /// How many delayed outputs wait for later cycles.
    [[nodiscard]] std::size_t waitingOutputs() const QUILLO_REALTIME;

    /// How many were lost, since the processor was made, because there was no room left for them to wait.
    [[nodiscard]] std::uint64_t lostOutputs() const QUILLO_REALTIME;

    [[nodiscard]] OSStatus status() const QUILLO_REALTIME { return status_; }

private:
    friend class RuleProcessor;

    /// Enters the queue and does nothing else: for a single step.
    Cycle(RuleProcessor& processor, OutputFunction output, SampleTime end) QUILLO_REALTIME;

    OSStatus onLoad(SampleTime start) QUILLO_REALTIME;
    OSStatus flushInstantMessages(SampleTime start) QUILLO_REALTIME;
    OSStatus flushDelayedMessages() QUILLO_REALTIME;

    OSStatus take(SampleTime at, TriggerBytes trigger, std::size_t length) QUILLO_REALTIME;
    OSStatus fireAll(RuleChain& chain, SampleTime at, const TriggerBytes& trigger) QUILLO_REALTIME;
    OSStatus fire(const MIDIRuleInternal& rule, SampleTime at, const TriggerBytes& trigger) QUILLO_REALTIME;
    /// What the rule at this place of the list sends.
    OSStatus schedule(std::uint32_t place, SampleTime at, SampleTime delay,
                      const MessageList& messages) QUILLO_REALTIME;
    void queue(std::uint32_t place, SampleTime due, const MessageList& messages) QUILLO_REALTIME;

    DispatchQueue::RenderEntry entry_;
    RuleProcessor& processor_;
    const CompiledRules& rules_;
    OutputFunction output_;
    SampleTime end_;
    OSStatus status_ = noErr;
};

}  // namespace quillo
