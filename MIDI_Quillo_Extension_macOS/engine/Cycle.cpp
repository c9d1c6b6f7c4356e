// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/Cycle.hpp"

#include <algorithm>

#include "engine/RuleProcessor.hpp"

namespace quillo {

namespace {

constexpr std::uint8_t cable = 0;

}  // namespace

Cycle::Cycle(RuleProcessor& processor, OutputFunction output, SampleTime end) QUILLO_REALTIME
    : entry_(processor.dispatchQueue),
      processor_(processor),
      rules_(*processor.compiled_),
      output_(output),
      end_(end) {}

Cycle::Cycle(RuleProcessor& processor, OutputFunction output, SampleTime start, SampleTime end)
    QUILLO_REALTIME
    : Cycle(processor, output, end) {
    if (status_ = onLoad(start); status_ != noErr) {
        return;
    }
    if (status_ = flushInstantMessages(start); status_ != noErr) {
        return;
    }
    status_ = flushDelayedMessages();
}

std::size_t Cycle::waitingOutputs() const QUILLO_REALTIME {
    return processor_.delayedMessages_.size();
}

std::uint64_t Cycle::lostOutputs() const QUILLO_REALTIME {
    return processor_.delayedMessages_.lost();
}

OSStatus Cycle::onLoad(SampleTime start) QUILLO_REALTIME {
    if (processor_.loaded_) {
        return noErr;
    }
    processor_.loaded_ = true;
    for (const auto& rule : rules_.rulesOnLoad) {
        if (const auto status = schedule(rule.place, start, rule.delay, rule.output); status != noErr) {
            return status;
        }
    }
    return noErr;
}

OSStatus Cycle::flushInstantMessages(SampleTime start) QUILLO_REALTIME {
    auto& messages = processor_.instantMessages_;
    const auto status = output_(start, cable, messages);
    messages.clear();
    return status;
}

OSStatus Cycle::flushDelayedMessages() QUILLO_REALTIME {
    auto& delayed = processor_.delayedMessages_;
    for (const auto* earliest = delayed.peek(); earliest != nullptr && earliest->time < end_;
         earliest = delayed.peek()) {
        const auto due = delayed.pop();
        if (!due) {
            return processor_.fatalErrors.set("the delay queue lost a message that it held");
        }
        if (const auto status = output_(due->time, cable, due->message.messages()); status != noErr) {
            return status;
        }
    }
    return noErr;
}

OSStatus Cycle::transport(SampleTime at, HostTransportTriggerVariantsV2 trigger) QUILLO_REALTIME {
    if (status_ == noErr) {
        RuleChain chain(rules_, trigger);
        status_ = fireAll(chain, at, TriggerBytes{});
    }
    return status_;
}

/// By value and inline: the bytes stay in registers.
inline OSStatus Cycle::take(SampleTime at, TriggerBytes trigger, std::size_t length) QUILLO_REALTIME {
    if (status_ != noErr) {
        return status_;
    }
    RuleChain chain(rules_, trigger);
    status_ = fireAll(chain, at, trigger);
    if (status_ == noErr && !chain.consumed()) {
        const MIDIMessage incoming({trigger.status, trigger.data1, trigger.data2}, length);
        status_ = output_(at, cable, {&incoming, 1});
    }
    return status_;
}

OSStatus Cycle::midi(SampleTime at, std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    const auto byteAt = [bytes](std::size_t index) QUILLO_REALTIME {
        return index < bytes.size() ? bytes[index] : std::uint8_t{0};
    };
    return take(at, TriggerBytes{byteAt(0), byteAt(1), byteAt(2)}, bytes.size());
}

OSStatus Cycle::midi(SampleTime at, const std::array<std::uint8_t, 3>& data,
                     std::size_t length) QUILLO_REALTIME {
    return take(at, TriggerBytes{data[0], data[1], data[2]}, length);
}

OSStatus Cycle::fireAll(RuleChain& chain, SampleTime at, const TriggerBytes& trigger) QUILLO_REALTIME {
    while (const auto* rule = chain.next()) {
        if (const auto status = fire(*rule, at, trigger); status != noErr) {
            return status;
        }
    }
    return noErr;
}

OSStatus Cycle::fire(const MIDIRuleInternal& rule, SampleTime at, const TriggerBytes& trigger)
    QUILLO_REALTIME {
    using Part = RuleInternalPartVariants;
    if (const auto* host = rule.variants.getIf<Part::WithHostBasedTrigger>()) {
        return schedule(rule.place, at, rule.delay, host->part.output);
    }
    const auto& content = rule.variants.getIf<Part::WithMessageBasedTrigger>()->part.output;
    if (const auto* bytes = content.getIf<MessageContent::Bytes>()) {
        return schedule(rule.place, at, rule.delay, bytes->messages);
    }
    return schedule(rule.place, at, rule.delay,
                    content.getIf<MessageContent::Generator>()->generate(trigger));
}

/// Every rule that fires passes here, those on load among them.
OSStatus Cycle::schedule(std::uint32_t place, SampleTime at, SampleTime delay,
                         const MessageList& messages) QUILLO_REALTIME {
    rules_.counts.count(place, at);
    SampleTime due = 0;
    if (!tryAdd(at, delay, due)) {
        return processor_.fatalErrors.set("a delay ends beyond the render timeline");
    }
    if (due < end_) {
        return output_(due, cable, messages.messages());
    }
    queue(place, due, messages);
    return noErr;
}

void Cycle::queue(std::uint32_t place, SampleTime due, const MessageList& messages) QUILLO_REALTIME {
    processor_.delayedMessages_.push({due, messages, rules_.names[place]});
}

// The processor's operations: a step each.

OSStatus RuleProcessor::onLoad(const OutputFunction& output, SampleTime start, SampleTime end)
    QUILLO_REALTIME {
    return Cycle(*this, output, end).onLoad(start);
}

OSStatus RuleProcessor::flushInstantMessages(const OutputFunction& output, SampleTime start) QUILLO_REALTIME {
    return Cycle(*this, output, start).flushInstantMessages(start);
}

OSStatus RuleProcessor::flushDelayedMessages(const OutputFunction& output, SampleTime end) QUILLO_REALTIME {
    return Cycle(*this, output, end).flushDelayedMessages();
}

OSStatus RuleProcessor::processHostTransport(const OutputFunction& output,
                                             HostTransportTriggerVariantsV2 trigger, SampleTime start,
                                             SampleTime end) QUILLO_REALTIME {
    return Cycle(*this, output, end).transport(start, trigger);
}

OSStatus RuleProcessor::processMIDIEvent(const OutputFunction& output, SampleTime at,
                                         const std::array<std::uint8_t, 3>& data, std::size_t length,
                                         SampleTime end) QUILLO_REALTIME {
    return Cycle(*this, output, end).midi(at, data, length);
}

bool RuleProcessor::hasWaitingMessages() QUILLO_REALTIME {
    const DispatchQueue::RenderEntry entry(dispatchQueue);
    return delayedMessages_.size() > 0 || !instantMessages_.empty();
}

bool RuleProcessor::cancel(std::uint64_t number) QUILLO_REALTIME {
    const DispatchQueue::RenderEntry entry(dispatchQueue);
    return delayedMessages_.remove(number);
}

std::size_t RuleProcessor::cancelDelayed() QUILLO_REALTIME {
    const DispatchQueue::RenderEntry entry(dispatchQueue);
    const auto count = delayedMessages_.size();
    delayedMessages_.clear();
    return count;
}

std::size_t RuleProcessor::cancelInstantMessages() QUILLO_REALTIME {
    const DispatchQueue::RenderEntry entry(dispatchQueue);
    const auto count = instantMessages_.size();
    instantMessages_.clear();
    return count;
}

}  // namespace quillo
