// SPDX-License-Identifier: GPL-3.0-or-later
#include "offline/OfflineHost.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

#include "engine/Cycle.hpp"
#include "platform/FatalError.hpp"
#include "platform/RealTimeFunction.hpp"

namespace quillo {

using Trigger = HostTransportTriggerVariantsV2;

OfflineHost::OfflineHost(const Settings& settings, std::vector<Rule> rules) : settings_(settings) {
    processor_.sampleRate = settings_.sampleRate;
    processor_.setRules(std::move(rules));
}

void OfflineHost::setLogs(Log input, Log output) {
    logInput_ = std::move(input);
    logOutput_ = std::move(output);
}

OfflineHost::Performance OfflineHost::play(std::span<const TimedMessage> messages, SampleTime end) {
    playMoving(messages, end);
    playTail(end);
    return {std::move(outputs_), delayedOutputs(), processor_.lostDelayedMessages()};
}

void OfflineHost::playMoving(std::span<const TimedMessage> messages, SampleTime end) {
    change_ = Trigger::Start;
    while (position_ < end) {
        messages = renderCycle(messages, std::min(position_ + settings_.block, end));
        skipCyclesBefore(messages.empty() ? end : messages.front().time);
        progress_(static_cast<double>(position_) / static_cast<double>(end));
    }
}

void OfflineHost::playTail(SampleTime end) {
    const SampleTime limit = end + std::llround(settings_.tail * settings_.sampleRate) + 1;
    change_ = Trigger::Stop;
    do {
        renderCycle({}, std::min(position_ + settings_.block, limit));
        skipCyclesBefore(limit);
    } while (delayedOutputs() > 0 && position_ < limit);
}

std::span<const TimedMessage> OfflineHost::renderCycle(std::span<const TimedMessage> messages,
                                                       SampleTime end) {
    auto output = WithoutDeadline([this](SampleTime time, std::uint8_t, std::span<const MIDIMessage> sent) {
        return keep(time, sent);
    });
    Cycle cycle(processor_, output, position_, end);
    if (const auto change = std::exchange(change_, std::nullopt)) {
        logInput_({position_, EventLogEntryVariants::Host{*change}});
        cycle.transport(position_, *change);
    }
    for (; !messages.empty() && messages.front().time < end; messages = messages.subspan(1)) {
        const auto& [time, message] = messages.front();
        logInput_({time, EventLogEntryVariants::MIDI{message}});
        cycle.midi(time, message.bytes());
    }
    if (cycle.status() != noErr) {
        processor_.fatalErrors.raise();
    }
    position_ = end;
    return messages;
}

OSStatus OfflineHost::keep(SampleTime time, std::span<const MIDIMessage> sent) {
    for (const auto& message : sent) {
        outputs_.push_back({time, message});
        logOutput_({time, EventLogEntryVariants::MIDI{message}});
    }
    return noErr;
}

void OfflineHost::skipCyclesBefore(SampleTime time) {
    const auto next = std::min(time, processor_.nextDelayedMessage().value_or(time));
    position_ = std::max(position_, next / settings_.block * settings_.block);
}

std::size_t OfflineHost::delayedOutputs() {
    return processor_.pendingDelayedMessages();
}

}  // namespace quillo
