// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/ProcessCycle.hpp"

#include <algorithm>

#include "midi/Status.hpp"

namespace quillo {

namespace {

/// Whether the transport has gone on as far as the server's clock: then it was not relocated, whether cycles
/// were missed or not. Both count frames and wrap; so do their differences, which stay right.
bool wentOnWithTheClock(const ServerTransport& last, const ServerTransport& now) QUILLO_REALTIME {
    return now.frame - last.frame == now.clock - last.clock;
}

/// An output port as the renderer fills it. What waits may take some bytes more in the port than those of the
/// messages.
class PortOutput final : public HostOutput {
public:
    PortOutput(MIDIOutputPort& port, RefusedMessages& refused) QUILLO_REALTIME
        : port_(port), refused_(refused), longest_(port.room()) {}

    [[nodiscard]] Room roomFor(Bytes bytes, const Waiting& waiting) const QUILLO_REALTIME override {
        constexpr std::size_t perMessage = 16;
        if (bytes.size() > longest_) {
            return Room::never;
        }
        const auto taken = waiting.messages * perMessage + waiting.bytes;
        return bytes.size() + taken <= port_.room() ? Room::enough : Room::full;
    }

    void write(std::uint32_t offset, std::span<const std::uint8_t> bytes) QUILLO_REALTIME override {
        if (!port_.tryWrite(offset, bytes)) {
            refused_.add(bytes, false);
        }
    }

private:
    MIDIOutputPort& port_;
    RefusedMessages& refused_;
    std::size_t longest_;  ///< message when the port is empty, in bytes
};

}  // namespace

void ProcessCycle::hold() {
    cyclesToHold_ = forever;
    isFinishing_ = false;
    finishedCycles_ = 0;
}

void ProcessCycle::run(std::uint32_t frames, const ServerTransport& transport, const MIDIInputPort& in,
                       MIDIOutputPort& out) QUILLO_REALTIME {
    ++cycles_;
    out.clear();
    PortOutput output(out, renderer_.refused());
    if (isFinishing_) {
        runLast(frames, output);
        return;
    }
    if (isHeld()) {
        return;
    }
    renderer_.begin(frames, output);
    reportTransport(transport);
    receive(in);
    // The status needs no answer of its own: refused messages are counted, and a fatal error waits in its
    // slot.
    static_cast<void>(renderer_.end());
}

/// What has gone out is heard before the next cycle begins.
void ProcessCycle::runLast(std::uint32_t frames, HostOutput& output) QUILLO_REALTIME {
    if (finishedCycles_ == 0) {
        renderer_.requests().ask(RenderRequests::Kind::endOfNotes);
    }
    renderer_.beginPassing(frames, output, BlockRenderer::Delivery::asItComes);
    static_cast<void>(renderer_.end());
    finishedCycles_ = renderer_.isOwing() ? 0 : finishedCycles_ + 1;
}

/// A server that relocates its rolling transport lets it start again from there. That is no stop: nothing
/// changes until it rolls again, and then it has jumped.
void ProcessCycle::reportTransport(const ServerTransport& transport) QUILLO_REALTIME {
    const bool isContinued = wentOnWithTheClock(last_, transport);
    last_ = transport;
    if (transport.isStarting && renderer_.transport().isMoving()) {
        return;
    }
    const HostTransport::State state{.isMoving = transport.isRolling};
    const auto position = static_cast<double>(transport.frame);
    if (isContinued) {
        renderer_.reportTransportContinued(0, state, position, 1.0);
    } else {
        renderer_.reportTransport(0, state, position);
    }
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
    lost_ += in.lost();
    for (std::uint32_t index = 0; index < in.size(); ++index) {
        const auto event = in.event(index);
        receive(event.offset, event.bytes);
    }
}

/// JACK hands every message over whole but system exclusive. That comes in pieces, with real-time messages
/// between and in the midst of them, and another message may cut it short. No rule hears it, so its own
/// bytes are passed over.
void ProcessCycle::receive(std::uint32_t offset, std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    for (; !bytes.empty(); bytes = bytes.subspan(1)) {
        const auto byte = bytes.front();
        if (midi::isRealTime(byte)) {
            receiveMessage(offset, bytes.first(1));
        } else if (!midi::isData(byte) && byte != midi::systemExclusive && byte != midi::endOfExclusive) {
            receiveMessage(offset, bytes);
            return;
        }
    }
}

void ProcessCycle::receiveMessage(std::uint32_t offset, std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    if (isPanic(bytes)) {
        renderer_.requests().ask(RenderRequests::Kind::panic);
    } else {
        renderer_.receive(offset, bytes);
    }
}

bool ProcessCycle::isPanic(std::span<const std::uint8_t> bytes) const QUILLO_REALTIME {
    return panicLength_ > 0 && bytes.size() >= panicLength_ &&
           std::equal(panicMessage_.begin(), panicMessage_.begin() + panicLength_, bytes.begin());
}

void ProcessCycle::setPanicMessage(std::span<const std::uint8_t> bytes) {
    panicLength_ = std::min(bytes.size(), panicMessage_.size());
    std::copy_n(bytes.begin(), panicLength_, panicMessage_.begin());
}

}  // namespace quillo
