// SPDX-License-Identifier: GPL-3.0-or-later
// The steps of a render cycle: everything here runs on the render thread.
#include <algorithm>

#include "engine/RuleChain.hpp"
#include "engine/RuleProcessor.hpp"

namespace quillo {

namespace {

constexpr std::uint8_t cable = 0;

}  // namespace

OSStatus RuleProcessor::onLoad(const OutputFunction& output, SampleTime start, SampleTime end)
    QUILLO_REALTIME {
    return dispatchQueue.sync([&] {
        if (loaded_) {
            return noErr;
        }
        loaded_ = true;
        return runOnLoadRules(output, {start, end});
    });
}

OSStatus RuleProcessor::runOnLoadRules(const OutputFunction& output, Moment moment) QUILLO_REALTIME {
    for (const auto& rule : compiled_->rulesOnLoad) {
        const auto status = schedule(output, moment, rule.delay, rule.output);
        if (status != noErr) {
            return status;
        }
    }
    return noErr;
}

OSStatus RuleProcessor::flushInstantMessages(const OutputFunction& output, SampleTime start) QUILLO_REALTIME {
    return dispatchQueue.sync([&] {
        const auto status = output(start, cable, instantMessages_);
        instantMessages_.clear();
        return status;
    });
}

OSStatus RuleProcessor::flushDelayedMessages(const OutputFunction& output, SampleTime end) QUILLO_REALTIME {
    return dispatchQueue.sync([&] { return popDueMessages(output, end); });
}

bool RuleProcessor::hasWaitingMessages() QUILLO_REALTIME {
    return dispatchQueue.sync([this] { return delayedMessages_.size() > 0 || !instantMessages_.empty(); });
}

bool RuleProcessor::hearsHostTransport() QUILLO_REALTIME {
    using Trigger = HostTransportTriggerVariantsV2;
    const auto isHeard = [this](Trigger trigger) QUILLO_REALTIME {
        return RuleChain(*compiled_, trigger).next() != nullptr;
    };
    return dispatchQueue.sync(
        [&] { return isHeard(Trigger::Start) || isHeard(Trigger::Continue) || isHeard(Trigger::Stop); });
}

OSStatus RuleProcessor::popDueMessages(const OutputFunction& output, SampleTime end) QUILLO_REALTIME {
    for (;;) {
        const auto* earliest = delayedMessages_.peek();
        if (earliest == nullptr || earliest->time >= end) {
            return noErr;
        }
        const auto due = delayedMessages_.pop();
        if (!due) {
            return fatalErrors.set("the delay queue lost a message that it held");
        }
        const auto status = output(due->time, cable, due->message.messages());
        if (status != noErr) {
            return status;
        }
    }
}

OSStatus RuleProcessor::processHostTransport(const OutputFunction& output,
                                             HostTransportTriggerVariantsV2 trigger, SampleTime start,
                                             SampleTime end) QUILLO_REALTIME {
    return dispatchQueue.sync([&] {
        RuleChain chain(*compiled_, trigger);
        while (const auto* rule = chain.next()) {
            const auto status = fire(output, {start, end}, *rule, TriggerBytes{});
            if (status != noErr) {
                return status;
            }
        }
        return noErr;
    });
}

OSStatus RuleProcessor::processMIDIEvent(const OutputFunction& output, const AUMIDIEvent& event,
                                         SampleTime end) QUILLO_REALTIME {
    return dispatchQueue.sync([&] { return runChain(output, event, end); });
}

OSStatus RuleProcessor::runChain(const OutputFunction& output, const AUMIDIEvent& event,
                                 SampleTime end) QUILLO_REALTIME {
    const TriggerBytes trigger{event.data[0], event.data[1], event.data[2]};
    RuleChain chain(*compiled_, trigger);
    while (const auto* rule = chain.next()) {
        const auto status = fire(output, {event.eventSampleTime, end}, *rule, trigger);
        if (status != noErr) {
            return status;
        }
    }
    if (chain.consumed()) {
        return noErr;
    }
    const auto length = std::min<std::size_t>(event.length, event.data.size());
    const auto incoming = MIDIMessage::inlineCopyOf({event.data.data(), length});
    return output(event.eventSampleTime, cable, {&incoming, 1});
}

OSStatus RuleProcessor::fire(const OutputFunction& output, Moment moment, const MIDIRuleInternal& rule,
                             const TriggerBytes& trigger) QUILLO_REALTIME {
    using Part = RuleInternalPartVariants;
    if (const auto* host = rule.variants.getIf<Part::WithHostBasedTrigger>()) {
        return schedule(output, moment, rule.delay, host->part.output);
    }
    const auto& content = rule.variants.getIf<Part::WithMessageBasedTrigger>()->part.output;
    if (const auto* bytes = content.getIf<MessageContent::Bytes>()) {
        return schedule(output, moment, rule.delay, bytes->messages);
    }
    const auto& generate = content.getIf<MessageContent::Generator>()->generate;
    return schedule(output, moment, rule.delay, generate(trigger));
}

OSStatus RuleProcessor::schedule(const OutputFunction& output, Moment moment, SampleTime delay,
                                 const MessageList& messages) QUILLO_REALTIME {
    SampleTime due = 0;
    if (!tryAdd(moment.base, delay, due)) {
        return fatalErrors.set("a delay ends beyond the render timeline");
    }
    if (due < moment.end) {
        return output(due, cable, messages.messages());
    }
    delayedMessages_.push({due, messages});
    return noErr;
}

}  // namespace quillo
