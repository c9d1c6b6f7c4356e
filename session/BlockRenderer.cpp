// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/BlockRenderer.hpp"

#include <algorithm>

#include "midi/MessageLength.hpp"

namespace quillo {

BlockRenderer::BlockRenderer(RuleProcessor& processor, const LogCallback& logInput,
                             const LogCallback& logOutput, HostTransport transport)
    : processor_(processor), logInput_(logInput), logOutput_(logOutput), transport_(transport) {}

void BlockRenderer::begin(std::uint32_t frames, HostOutput& output, Delivery delivery) QUILLO_REALTIME {
    beginPassing(frames, output, delivery);
    cycle_.emplace(processor_, OutputFunction(send_), blockStart_, blockStart_ + std::max(frames, 1U));
}

void BlockRenderer::beginPassing(std::uint32_t frames, HostOutput& output, Delivery delivery)
    QUILLO_REALTIME {
    frames_ = frames;
    offset_ = 0;
    output_.begin(output, delivery);
    if (const auto number = requests_.takeCancelled(); number != 0) {
        processor_.cancel(number);
    }
    if (const auto asked = requests_.take(); asked.any()) {
        serve(asked);
    }
    if (owed_.any()) {
        sendOwed();
    }
    snapshot_.goOn(processor_);
}

void BlockRenderer::serve(RenderRequests::Kinds asked) QUILLO_REALTIME {
    using Kind = RenderRequests::Kind;
    if (asked.has(Kind::panic)) {
        if (!panic_) {
            panic_ = {output_.sounding().countOfNotes(), output_.sounding().countOfPedals(), 0};
        }
        panic_->messages += cancelDelayed() + processor_.cancelInstantMessages();
        owed_.oweSilence(output_.sounding());
    }
    if (asked.has(Kind::cancelAll)) {
        cancelDelayed();
    }
    if (asked.has(Kind::load)) {
        processor_.loadAgain();
    }
    if (asked.has(Kind::endOfNotes)) {
        owed_.oweEnds(output_.sounding());
    }
}

std::size_t BlockRenderer::cancelDelayed() QUILLO_REALTIME {
    waitingOutputs_.store(0, std::memory_order_relaxed);
    return processor_.cancelDelayed();
}

/// These messages never fail: what the host has no room for stays owed.
void BlockRenderer::sendOwed() QUILLO_REALTIME {
    while (const auto message = owed_.next()) {
        if (output_.trySend(0, *message) != HostOutput::Room::enough) {
            return;
        }
        owed_.settle(*message);
        if (logOutput_) {
            logOutput_({blockStart_, EventLogEntryVariants::MIDI{MIDIMessage::inlineCopyOf(*message)}});
        }
    }
    if (panic_) {
        requests_.answer(*panic_);
        panic_.reset();
    }
}

void BlockRenderer::receive(std::uint32_t offset, std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    if (!isCompleteShortMessage(bytes)) {
        return;
    }
    goTo(offset);
    fireTransport();
    if (cycle_->status() != noErr) {
        return;
    }
    if (logInput_) {
        logInput_({time(), EventLogEntryVariants::MIDI{MIDIMessage::inlineCopyOf(bytes)}});
    }
    cycle_->midi(time(), bytes);
}

void BlockRenderer::pass(std::uint32_t offset, std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    goTo(offset);
    if (output_.trySend(offset_, bytes) == HostOutput::Room::enough) {
        settle(bytes);
    }
}

void BlockRenderer::reportTransport(std::uint32_t offset, HostTransport::State state, double position,
                                    double speed) QUILLO_REALTIME {
    goTo(offset);
    transport_.report(state, position, speed);
}

void BlockRenderer::reportTransport(std::uint32_t offset, HostTransport::State state) QUILLO_REALTIME {
    goTo(offset);
    transport_.report(state);
}

void BlockRenderer::reportTransportContinued(std::uint32_t offset, HostTransport::State state,
                                             double position, double speed) QUILLO_REALTIME {
    goTo(offset);
    transport_.reportContinued(state, position, speed);
}

OSStatus BlockRenderer::end() QUILLO_REALTIME {
    auto status = noErr;
    if (cycle_) {
        fireTransport();
        transport_.advance(frames_ - offset_);
        blockStart_ += frames_;
        status = cycle_->status();
        waitingOutputs_.store(cycle_->waitingOutputs(), std::memory_order_relaxed);
        hasLostOutputs_.store(cycle_->lostOutputs() > 0, std::memory_order_relaxed);
        reached_.store(blockStart_, std::memory_order_relaxed);
        cycle_.reset();
    }
    output_.end();
    logInput_.endBlock();
    logOutput_.endBlock();
    return status;
}

/// What is reported for one frame counts as one report, unless a message comes in between.
void BlockRenderer::goTo(std::uint32_t offset) QUILLO_REALTIME {
    const auto reached = std::min(offset, std::max(frames_, 1U) - 1);
    if (reached <= offset_) {
        return;
    }
    if (cycle_) {
        fireTransport();
        transport_.advance(reached - offset_);
    }
    output_.passTo(reached);
    offset_ = reached;
}

/// A cycle that has ended hears of no change: the next one does.
void BlockRenderer::fireTransport() QUILLO_REALTIME {
    if (cycle_->status() != noErr) {
        return;
    }
    if (const auto change = transport_.takeChange()) {
        fire(*change);
    }
}

void BlockRenderer::fire(HostTransportTriggerVariantsV2 change) QUILLO_REALTIME {
    if (logInput_) {
        logInput_({time(), EventLogEntryVariants::Host{change}});
    }
    cycle_->transport(time(), change);
}

OSStatus BlockRenderer::Send::operator()(SampleTime time, std::uint8_t, Messages all) const QUILLO_REALTIME {
    for (const auto& message : all) {
        if (const auto status = renderer.send(time, message); status != noErr) {
            return status;
        }
    }
    return noErr;
}

OSStatus BlockRenderer::send(SampleTime time, const MIDIMessage& message) QUILLO_REALTIME {
    const auto bytes = message.bytes();
    const auto room = output_.trySend(offsetOf(time), bytes);
    if (room == HostOutput::Room::enough) {
        settle(bytes);
        if (logOutput_) {
            logOutput_({time, EventLogEntryVariants::MIDI{message}});
        }
        return noErr;
    }
    const bool isLeftOut = room == HostOutput::Room::never && midi::isSystemExclusive(bytes);
    refused_.add(bytes, isLeftOut);
    return isLeftOut ? noErr : kQuilloErr_OutputFull;
}

void BlockRenderer::settle(std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    if (owed_.any()) {
        owed_.settle(bytes);
    }
}

/// What a block that failed has left behind is overdue; behind its end a cycle sends nothing.
std::uint32_t BlockRenderer::offsetOf(SampleTime time) const QUILLO_REALTIME {
    return static_cast<std::uint32_t>(std::max<SampleTime>(time - blockStart_, 0));
}

}  // namespace quillo
