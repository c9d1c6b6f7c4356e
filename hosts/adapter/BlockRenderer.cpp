// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/adapter/BlockRenderer.hpp"

#include <algorithm>

#include "midi/MessageLength.hpp"

namespace quillo {

namespace {

bool isSystemExclusive(std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    constexpr std::uint8_t status = 0xF0;
    return !bytes.empty() && bytes.front() == status;
}

}  // namespace

BlockRenderer::BlockRenderer(MIDIQuilloAUAudioUnit& unit, HostTransport transport)
    : unit_(unit), renderBlock_(unit.internalRenderBlock()), transport_(transport) {
    unit_.transportStateBlock = [this](AUHostTransportStateFlags* flags, double* position, double*,
                                       double*) QUILLO_REALTIME {
        *flags = transport_.flags();
        *position = transport_.position();
        return true;
    };
    unit_.MIDIOutputEventBlock = [this](AUEventSampleTime time, std::uint8_t,
                                        std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
        return take(time, bytes);
    };
}

BlockRenderer::~BlockRenderer() {
    unit_.transportStateBlock = {};
    unit_.MIDIOutputEventBlock = {};
}

void BlockRenderer::begin(std::uint32_t frames) QUILLO_REALTIME {
    incoming_.clear();
    outgoing_.clear();
    frames_ = frames;
    cycleStart_ = 0;
    lastOffset_ = 0;
    status_ = noErr;
}

std::uint32_t BlockRenderer::withinBlock(std::uint32_t offset) const QUILLO_REALTIME {
    return std::max(lastOffset_, std::min(offset, frames_ == 0 ? 0 : frames_ - 1));
}

void BlockRenderer::receive(std::uint32_t offset, std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    lastOffset_ = withinBlock(offset);
    if (tryReceive(lastOffset_, bytes)) {
        return;
    }
    renderThrough(lastOffset_);
    tryReceive(lastOffset_, bytes);
}

/// False when the cycle is full: then the message is still to be received.
bool BlockRenderer::tryReceive(std::uint32_t offset, std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    if (isSystemExclusive(bytes)) {
        AUMIDISysExEvent event;
        event.eventType = AURenderEventType::midiSysEx;
        event.eventSampleTime = timeOf(offset);
        event.data = bytes;
        return incoming_.tryPush(event);
    }
    return !isCompleteShortMessage(bytes) || incoming_.tryPushMIDI(timeOf(offset), bytes);
}

void BlockRenderer::tellTransport(std::uint32_t offset, AUHostTransportStateFlags flags, double position,
                                  double speed) QUILLO_REALTIME {
    beginCycleFor(offset);
    transport_.tell(flags, position, speed);
}

void BlockRenderer::tellTransport(std::uint32_t offset, AUHostTransportStateFlags flags) QUILLO_REALTIME {
    beginCycleFor(offset);
    transport_.tell(flags);
}

void BlockRenderer::followTransport(std::uint32_t offset, AUHostTransportStateFlags flags, double position,
                                    double speed) QUILLO_REALTIME {
    beginCycleFor(offset);
    transport_.follow(flags, position, speed);
}

/// A cycle sees its transport before its messages. Where messages of the same offset have come first, the
/// change waits for the frame after them; the transport itself stays where it is told.
void BlockRenderer::beginCycleFor(std::uint32_t offset) QUILLO_REALTIME {
    const auto told = withinBlock(offset);
    const bool behindMessages = incoming_.size() > 0 && lastOffset_ == told;
    lastOffset_ = told;
    if (told < cycleStart_) {
        return;
    }
    if (behindMessages) {
        renderThrough(told);
    } else {
        renderUpTo(told);
    }
}

OSStatus BlockRenderer::end() QUILLO_REALTIME {
    if (cycleStart_ < frames_ || frames_ == 0 || incoming_.size() > 0) {
        render(frames_, frames_);
    }
    blockStart_ += frames_;
    return status_;
}

/// Without a cycle when none is due: then the transport goes on without one.
void BlockRenderer::renderUpTo(std::uint32_t offset) QUILLO_REALTIME {
    if (offset > cycleStart_) {
        render(offset, offset);
    } else {
        transport_.wait(lag_);
        lag_ = 0;
    }
}

/// Renders the frame at this offset too, and leaves the transport there.
void BlockRenderer::renderThrough(std::uint32_t offset) QUILLO_REALTIME {
    render(std::min(offset + 1, frames_), offset);
}

/// One cycle, after which the transport is where the frame at `next` begins.
void BlockRenderer::render(std::uint32_t end, std::uint32_t next) QUILLO_REALTIME {
    const AudioTimeStamp start{static_cast<double>(timeOf(cycleStart_))};
    const auto status = renderBlock_(start, frames_ == 0 ? 1 : end - cycleStart_, incoming_.head());
    if (status_ == noErr) {
        status_ = status;
    }
    incoming_.clear();
    transport_.advance(next + lag_ - cycleStart_);
    lag_ = end - next;
    cycleStart_ = end;
}

OSStatus BlockRenderer::take(SampleTime time, std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    const auto last = timeOf(frames_ == 0 ? 0 : frames_ - 1);
    const auto offset = static_cast<std::uint32_t>(std::clamp(time, blockStart_, last) - blockStart_);
    const auto room = roomFor(offset, bytes);
    if (room == Room::enough) {
        return outgoing_.tryPush(offset, bytes) ? noErr : kQuilloErr_OutputFull;
    }
    const bool isLeftOut = room == Room::never && isSystemExclusive(bytes);
    refused_.add(bytes, isLeftOut);
    return isLeftOut ? noErr : kQuilloErr_OutputFull;
}

BlockRenderer::Room BlockRenderer::roomFor(std::uint32_t offset, std::span<const std::uint8_t> bytes) const QUILLO_REALTIME {
    if (bytes.size() > outgoingBytes) {
        return Room::never;
    }
    if (!outgoing_.hasRoomFor(bytes.size())) {
        return Room::full;
    }
    return ask_ ? ask_(offset, bytes) : Room::enough;
}

}  // namespace quillo
