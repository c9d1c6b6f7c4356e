// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/ProcessCycle.hpp"

#include <algorithm>

namespace quillo {

namespace {

/// Whether the transport has gone on as far as the server's clock: then it was not relocated, whether cycles
/// were missed or not. Both count frames and wrap; so do their differences, which stay right.
bool wentOnWithTheClock(const ServerTransport& last, const ServerTransport& now) QUILLO_REALTIME {
    return now.frame - last.frame == now.clock - last.clock;
}

}  // namespace

ProcessCycle::ProcessCycle(BlockRenderer& renderer) : renderer_(renderer) {
    renderer_.setAsk([this](std::uint32_t offset, std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
        return write(offset, bytes);
    });
}

ProcessCycle::~ProcessCycle() {
    renderer_.setAsk({});
}

void ProcessCycle::run(std::uint32_t frames, const ServerTransport& transport, const MIDIInputPort& in,
                       MIDIOutputPort& out) QUILLO_REALTIME {
    ++cycles_;
    out.clear();
    if (isHeld()) {
        return;
    }
    out_ = &out;
    longest_ = out.room();
    lastWritten_ = 0;
    renderer_.begin(frames);
    tellTransport(transport);
    receive(in);
    // The status needs no answer of its own: refused messages are counted, and a fatal error waits in its
    // slot.
    static_cast<void>(renderer_.end());
    if (!renderer_.outgoing().cameInTimeOrder()) {
        writeInTimeOrder();
    }
    out_ = nullptr;
}

/// A server that relocates its rolling transport lets it start anew from there. That is no stop: nothing
/// changes until it rolls again, and then it has jumped.
void ProcessCycle::tellTransport(const ServerTransport& transport) QUILLO_REALTIME {
    if (wentOnWithTheClock(last_, transport)) {
        renderer_.loseTransport();
    }
    last_ = transport;
    if (transport.isStarting && renderer_.transport().isMoving()) {
        return;
    }
    renderer_.tellTransport(0, transport.isRolling ? AUHostTransportStateMoving : 0,
                            static_cast<double>(transport.frame));
}

bool ProcessCycle::isHeld() QUILLO_REALTIME {
    auto left = cyclesToHold_.load();
    if (left == 0) {
        return false;
    }
    if (left != forever) {
        cyclesToHold_.compare_exchange_strong(left, left - 1);
    }
    return true;
}

void ProcessCycle::receive(const MIDIInputPort& in) QUILLO_REALTIME {
    assembler_.beginCycle();
    lost_ += in.lost();
    for (std::uint32_t index = 0; index < in.size(); ++index) {
        const auto event = in.event(index);
        auto deliver = [&](std::span<const std::uint8_t> message) QUILLO_REALTIME {
            renderer_.receive(event.offset, message);
        };
        assembler_.take(event.bytes, deliver);
    }
}

BlockRenderer::Room ProcessCycle::write(std::uint32_t offset,
                                        std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    using Room = BlockRenderer::Room;
    const auto time = std::max(offset, lastWritten_);
    if (out_->tryWrite(time, bytes)) {
        lastWritten_ = time;
        return Room::enough;
    }
    const auto room = bytes.size() > longest_ ? Room::never : Room::full;
    ++(room == Room::never ? tooLong_ : refused_);
    return room;
}

void ProcessCycle::writeInTimeOrder() QUILLO_REALTIME {
    out_->clear();
    for (const auto& message : renderer_.outgoing().inTimeOrder()) {
        if (!out_->tryWrite(message.offset, message.bytes)) {
            ++refused_;
        }
    }
}

}  // namespace quillo
