// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/adapter/BlockRenderer.hpp"

#include <algorithm>

namespace quillo {

namespace {

constexpr std::uint8_t lowestStatus = 0x80;
constexpr std::uint8_t systemExclusive = 0xF0;
constexpr std::size_t longestShortMessage = 3;

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
    renderUpTo(std::min(lastOffset_ + 1, frames_));
    tryReceive(lastOffset_, bytes);
}

/// False when the cycle is full: then the message is still to be received.
bool BlockRenderer::tryReceive(std::uint32_t offset, std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    if (bytes.empty() || bytes.front() < lowestStatus) {
        return true;
    }
    if (bytes.front() == systemExclusive) {
        AUMIDISysExEvent event;
        event.eventType = AURenderEventType::midiSysEx;
        event.eventSampleTime = timeOf(offset);
        event.data = bytes;
        return incoming_.tryPush(event);
    }
    return bytes.size() > longestShortMessage || incoming_.tryPushMIDI(timeOf(offset), bytes);
}

void BlockRenderer::tellTransport(std::uint32_t offset, AUHostTransportStateFlags flags, double position,
                                  double speed) QUILLO_REALTIME {
    const auto late = beginCycleFor(offset);
    const bool moves = (flags & AUHostTransportStateMoving) != 0;
    transport_.tell(flags, moves ? position + late * speed : position, speed);
}

void BlockRenderer::tellTransport(std::uint32_t offset, AUHostTransportStateFlags flags) QUILLO_REALTIME {
    beginCycleFor(offset);
    transport_.tell(flags);
}

/// A cycle sees its transport before its messages. Where messages of the same offset have come first, the change
/// waits for the frame after them: then the answer is 1, otherwise 0.
std::uint32_t BlockRenderer::beginCycleFor(std::uint32_t offset) QUILLO_REALTIME {
    const auto told = withinBlock(offset);
    const bool behindMessages = incoming_.size() > 0 && lastOffset_ == told;
    const auto start = behindMessages ? told + 1 : told;
    if (start > cycleStart_) {
        renderUpTo(std::min(start, frames_));
    }
    lastOffset_ = told;
    return start - told;
}

OSStatus BlockRenderer::end() QUILLO_REALTIME {
    if (cycleStart_ < frames_ || frames_ == 0 || incoming_.size() > 0) {
        renderUpTo(frames_);
    }
    blockStart_ += frames_;
    return status_;
}

void BlockRenderer::renderUpTo(std::uint32_t offset) QUILLO_REALTIME {
    const AudioTimeStamp start{static_cast<double>(timeOf(cycleStart_))};
    const auto status = renderBlock_(start, offset - cycleStart_, incoming_.head());
    if (status_ == noErr) {
        status_ = status;
    }
    incoming_.clear();
    transport_.advance(offset - cycleStart_);
    cycleStart_ = offset;
}

OSStatus BlockRenderer::take(SampleTime time, std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    const auto last = timeOf(frames_ == 0 ? 0 : frames_ - 1);
    const auto offset = static_cast<std::uint32_t>(std::clamp(time, blockStart_, last) - blockStart_);
    if (!outgoing_.hasRoomFor(bytes.size()) || (ask_ && !ask_(offset, bytes))) {
        return kQuilloErr_OutputFull;
    }
    return outgoing_.tryPush(offset, bytes) ? noErr : kQuilloErr_OutputFull;
}

}  // namespace quillo
