// SPDX-License-Identifier: GPL-3.0-or-later
#include "offline/OfflineHost.hpp"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "platform/FatalError.hpp"
#include "platform/RealTimeFunction.hpp"

namespace quillo {

namespace {

/// As many messages as fall into one cycle when cycles begin at the multiples of `block`.
std::size_t mostInOneCycle(std::span<const TimedMessage> messages, SampleTime block) {
    std::size_t most = 0;
    std::size_t first = 0;
    for (std::size_t i = 0; i < messages.size(); ++i) {
        if (messages[i].time / block != messages[first].time / block) {
            first = i;
        }
        most = std::max(most, i - first + 1);
    }
    return most;
}

std::shared_ptr<MIDIQuilloAUAudioUnit> makeUnit() {
    auto made = MIDIQuilloAUAudioUnit::create(midiQuilloComponent);
    if (const auto* error = std::get_if<NSError>(&made)) {
        fatalError("the unit cannot be made: status " + std::to_string(error->code));
    }
    return std::get<0>(std::move(made));
}

void setSampleRate(AUAudioUnitBus& bus, std::uint32_t sampleRate) {
    auto format = bus.format();
    format.sampleRate = sampleRate;
    if (bus.setFormat(format) != noErr) {
        fatalError("the unit refuses a sample rate of " + std::to_string(sampleRate));
    }
}

}  // namespace

OfflineHost::OfflineHost(const Settings& settings, const Data& preset)
    : settings_(settings), unit_(makeUnit()), events_(0) {
    setSampleRate(unit_->inputBusses()[0], settings_.sampleRate);
    setSampleRate(unit_->outputBusses()[0], settings_.sampleRate);
    unit_->maximumFramesToRender = settings_.block;
    if (const auto error = unit_->allocateRenderResources()) {
        fatalError("the unit cannot get ready to render: status " + std::to_string(error->code));
    }
    // Delays become samples when the rules are installed, at the rate that the unit has then.
    unit_->setFullState(StateDictionary{{stateKey, preset}});
    unit_->transportStateBlock =
        WithoutDeadline([this](AUHostTransportStateFlags* flags, double* position, double*, double*) {
            *flags = isMoving_ ? AUHostTransportStateMoving : 0;
            *position = static_cast<double>(position_);
            return true;
        });
    unit_->MIDIOutputEventBlock =
        WithoutDeadline([this](AUEventSampleTime time, std::uint8_t, std::span<const std::uint8_t> bytes) {
            outputs_.push_back({time, MIDIMessage::copyOf(bytes)});
            return noErr;
        });
    renderBlock_ = unit_->internalRenderBlock();
}

void OfflineHost::setLogs(const Log& input, const Log& output) {
    unit_->logInput = WithoutDeadline([input](const EventLogEntry& entry) { input(entry); });
    unit_->logOutput = WithoutDeadline([output](const EventLogEntry& entry) { output(entry); });
}

OfflineHost::Performance OfflineHost::play(std::span<const TimedMessage> messages, SampleTime end) {
    events_ = RenderEventList(mostInOneCycle(messages, settings_.block));
    playMoving(messages, end);
    playTail(end);
    return {std::move(outputs_), delayedOutputs()};
}

void OfflineHost::playMoving(std::span<const TimedMessage> messages, SampleTime end) {
    isMoving_ = true;
    while (position_ < end) {
        messages = renderCycle(messages, std::min(position_ + settings_.block, end));
        skipCyclesBefore(messages.empty() ? end : messages.front().time);
        progress_(static_cast<double>(position_) / static_cast<double>(end));
    }
}

void OfflineHost::playTail(SampleTime end) {
    const SampleTime limit = end + std::llround(settings_.tail * settings_.sampleRate) + 1;
    isMoving_ = false;
    do {
        renderCycle({}, std::min(position_ + settings_.block, limit));
        skipCyclesBefore(limit);
    } while (delayedOutputs() > 0 && position_ < limit);
}

std::span<const TimedMessage> OfflineHost::renderCycle(std::span<const TimedMessage> messages,
                                                       SampleTime end) {
    events_.clear();
    while (!messages.empty() && messages.front().time < end) {
        if (!events_.tryPushMIDI(messages.front().time, messages.front().message.bytes())) {
            fatalError("more messages in a cycle than were counted");
        }
        messages = messages.subspan(1);
    }
    const AudioTimeStamp start{static_cast<double>(position_)};
    const auto status = renderBlock_(start, static_cast<AUAudioFrameCount>(end - position_), events_.head());
    if (status != noErr) {
        unit_->processor->fatalErrors.raise();
        fatalError("the unit ended a cycle with status " + std::to_string(status));
    }
    position_ = end;
    return messages;
}

void OfflineHost::skipCyclesBefore(SampleTime time) {
    const auto next = std::min(time, unit_->processor->nextDelayedMessage().value_or(time));
    position_ = std::max(position_, next / settings_.block * settings_.block);
}

std::size_t OfflineHost::delayedOutputs() const {
    return unit_->processor->pendingDelayedMessages();
}

}  // namespace quillo
