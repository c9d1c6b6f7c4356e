// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "engine/CompiledRules.hpp"
#include "engine/DelayedMessage.hpp"
#include "engine/MyBinaryHeap.hpp"
#include "engine/OutputFunction.hpp"
#include "engine/RuleCompiler.hpp"
#include "engine/SampleTime.hpp"
#include "platform/DispatchQueue.hpp"
#include "platform/FatalError.hpp"
#include "platform/RealTime.hpp"
#include "rules/Rule.hpp"
#include "rules/RuleShelf.hpp"

namespace quillo {

/// The engine: tries every event against the rules, in order, and emits what they send at exact sample times.
///
/// The editor and the host's state calls install rules; the render thread runs whole cycles (see `Cycle`), or
/// the five steps of one, in the order in which they stand below, and gives up the cycle at the first status
/// other than `noErr`. A cycle covers the sample times from `start` up to, and not including, `end`. All
/// messages leave through the caller's output function, on cable 0.
///
/// Every operation but `loadAgain` and `hearsHostTransport` enters `dispatchQueue` by itself: steps, and
/// reads of the rules, as ordinary blocks; changes, and reads of what waits, as barriers. The bodies of the
/// steps stand in Cycle.cpp, those of the rest in RuleProcessor.cpp.
class RuleProcessor {
public:
    /// How many delayed outputs can wait.
    static constexpr std::size_t delayCapacity = 10000;

    RuleProcessor();

    /// Samples per second, used when rules are installed: those installed before keep their delays.
    std::atomic<std::uint64_t> sampleRate{defaultSampleRate};

    /// "rule-processore-queue": the rules and the delays are touched in its blocks only.
    DispatchQueue dispatchQueue;

    /// Where a render step leaves a fatal error: times beyond 64 bits, a damaged delay queue.
    FatalErrorSlot fatalErrors;

    /// [any but render] The list that was installed last.
    [[nodiscard]] std::vector<Rule> rules();

    /// [any but render] The same with all that was made of it: what it has counted among it.
    [[nodiscard]] std::shared_ptr<const CompiledRules> compiledRules();

    /// [any but render] Compiles the list and installs it, all or nothing: on a fatal error (see
    /// `compileRules`) the installed rules stay. What is waiting to be sent still is. Returns what was
    /// installed before, which no longer counts. With the shelf an error has the rule's number in the list.
    std::shared_ptr<const CompiledRules> setRules(std::vector<Rule> rules, const RuleShelf& shelf = {});

    /// [any but render] Sends one output by hand, at the start of the next cycle. An output that takes
    /// something from a triggering message is a fatal error.
    void send(const RuleOutputVariantsV2& output);

    /// [any but render] How many messages sent by hand wait for the next cycle.
    [[nodiscard]] std::size_t pendingInstantMessages();

    /// [any but render] How many delayed outputs wait.
    [[nodiscard]] std::size_t pendingDelayedMessages();

    /// [any but render] How many delayed outputs were lost because there was no room left for them to wait.
    [[nodiscard]] std::uint64_t lostDelayedMessages();

    /// [any but render] When the first of them is due; nothing when none waits.
    [[nodiscard]] std::optional<SampleTime> nextDelayedMessage();

    /// [render] Step 1: fires the on-load rules in the processor's first cycle, whatever becomes of it, and
    /// never again but after `loadAgain`.
    OSStatus onLoad(const OutputFunction& output, SampleTime start, SampleTime end) QUILLO_REALTIME;

    /// [render] Step 2: sends all that was sent by hand, in one call (also when there is nothing), and
    /// forgets it, whatever the call returns.
    OSStatus flushInstantMessages(const OutputFunction& output, SampleTime start) QUILLO_REALTIME;

    /// [render] Step 3: sends the delayed outputs that are due before `end`, earliest first, each with its
    /// own time; outputs due at the same time leave in the order in which they were queued.
    OSStatus flushDelayedMessages(const OutputFunction& output, SampleTime end) QUILLO_REALTIME;

    /// [render] Step 4, in cycles in which the host's transport changed: runs the event through the rules.
    OSStatus processHostTransport(const OutputFunction& output, HostTransportTriggerVariantsV2 trigger,
                                  SampleTime start, SampleTime end) QUILLO_REALTIME;

    /// [render] Step 5, for each MIDI event of the cycle, with its sample time, bytes and length: runs it
    /// through the rules and forwards it, after their immediate outputs, unless a rule consumed it (see
    /// `Cycle::midi`).
    OSStatus processMIDIEvent(const OutputFunction& output, SampleTime at,
                              const std::array<std::uint8_t, 3>& data, std::size_t length,
                              SampleTime end) QUILLO_REALTIME;

    /// [render] Whether a cycle without events would have something to send, now or later.
    [[nodiscard]] bool hasWaitingMessages() QUILLO_REALTIME;

    /// [render] Discards the delayed output of this number, if it still waits. Between two cycles.
    bool cancel(std::uint64_t number) QUILLO_REALTIME;

    /// [render] Discards all delayed outputs; how many they were. Between two cycles.
    std::size_t cancelDelayed() QUILLO_REALTIME;

    /// [render] Discards what was sent by hand; how many messages that were. Between two cycles.
    std::size_t cancelInstantMessages() QUILLO_REALTIME;

    /// [render] Calls `visit(number, output)` for those of the delayed outputs that wait in a few slots, from
    /// the given one on, at most so many; returns the slot to go on with, 0 when these were the last. One
    /// that waits from the first of such calls to the last is visited once, whatever is queued and sent in
    /// between. An output is numbered when it is queued: no other ever has its number. Between two cycles.
    template <class Visit>
    std::size_t visitWaiting(std::size_t slot, std::size_t count, const Visit& visit) QUILLO_REALTIME {
        const DispatchQueue::RenderEntry entry(dispatchQueue);
        const auto end = std::min(slot + count, delayedMessages_.slotsUsed());
        for (; slot < end; ++slot) {
            if (const auto* output = delayedMessages_.inSlot(slot)) {
                visit(delayedMessages_.numberInSlot(slot), *output);
            }
        }
        return end < delayedMessages_.slotsUsed() ? end : 0;
    }

    /// [render] Between cycles: the next one fires the on-load rules, as the first one did.
    void loadAgain() QUILLO_REALTIME { loaded_ = false; }

    /// [any] Whether a rule waits for the host's transport: then a cycle without events matters too.
    [[nodiscard]] bool hearsHostTransport() const QUILLO_REALTIME { return hearsHostTransport_; }

private:
    friend class Cycle;

    bool tryAppendInstantMessages(std::span<const MIDIMessage> messages, std::vector<MIDIMessage>& room);

    bool loaded_ = false;
    std::shared_ptr<const CompiledRules> compiled_;
    std::atomic<bool> hearsHostTransport_{false};
    MyBinaryHeap<DelayedMessage> delayedMessages_{delayCapacity};
    std::vector<MIDIMessage> instantMessages_;
};

}  // namespace quillo
