// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstdint>

#include "hosts/adapter/BlockRenderer.hpp"
#include "hosts/jack/MIDIPorts.hpp"
#include "hosts/jack/SystemExclusiveAssembler.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

/// The server's transport in one cycle.
struct ServerTransport {
    bool isRolling = false;
    std::uint32_t frame = 0;  ///< at the cycle's first frame
    /// The server's own count of frames there, which goes on while cycles are missed.
    std::uint32_t clock = 0;
    /// It is about to roll from here, and waits for its clients, at least for this cycle.
    bool isStarting = false;
};

/// What a cycle of the server does with the unit: the events of the input port go in at their frames, what the
/// unit sends leaves through the output port in the order of time. All that the process thread owns is here; it
/// outlives the clients that come and go with the server.
///
/// Each message is written into the port as it is sent, at its frame or, when a later one was written before, at
/// that one's: so the port itself says whether there is room, and the unit hears of it. When the messages did
/// not come in the order of time the port is written once more at the cycle's end, now in order; the same
/// messages fit again.
class ProcessCycle {
public:
    /// The renderer must outlive it.
    explicit ProcessCycle(BlockRenderer& renderer);
    ~ProcessCycle();
    ProcessCycle(const ProcessCycle&) = delete;
    ProcessCycle& operator=(const ProcessCycle&) = delete;

    /// [main] The unit stands still from the next cycle on: nothing goes in or out.
    void hold() { cyclesToHold_ = forever; }

    /// [main] Lets the unit run. Connections that were made before this call are there in the first cycle that
    /// it renders: the server needs a cycle to put them in force.
    void release() { cyclesToHold_ = cyclesUntilConnected; }

    /// [render] One cycle.
    void run(std::uint32_t frames, const ServerTransport& transport, const MIDIInputPort& in,
             MIDIOutputPort& out) QUILLO_REALTIME;

    /// [any] How many cycles have run, held or not, since this was made.
    [[nodiscard]] std::uint64_t cycles() const { return cycles_; }
    /// [any] How many messages the output port had no room for, since this was made.
    [[nodiscard]] std::uint64_t refused() const { return refused_; }
    /// [any] How many messages were longer than the output port has room for when it is empty.
    [[nodiscard]] std::uint64_t tooLong() const { return tooLong_; }
    /// [any] How many events were lost on their way into the input port.
    [[nodiscard]] std::uint64_t lost() const { return lost_; }

private:
    static constexpr std::uint32_t forever = 0xFFFFFFFF;
    static constexpr std::uint32_t cyclesUntilConnected = 2;

    [[nodiscard]] bool isHeld() QUILLO_REALTIME;
    void tellTransport(const ServerTransport& transport) QUILLO_REALTIME;
    void receive(const MIDIInputPort& in) QUILLO_REALTIME;
    BlockRenderer::Room write(std::uint32_t offset, std::span<const std::uint8_t> bytes) QUILLO_REALTIME;
    void writeInTimeOrder() QUILLO_REALTIME;

    BlockRenderer& renderer_;
    SystemExclusiveAssembler assembler_;
    ServerTransport last_;           ///< of the cycle before
    MIDIOutputPort* out_ = nullptr;  ///< during a cycle
    std::size_t longest_ = 0;        ///< the longest message for the port when it is empty
    std::uint32_t lastWritten_ = 0;  ///< the offset of the last message in the port
    std::atomic<std::uint32_t> cyclesToHold_{forever};
    std::atomic<std::uint64_t> cycles_{0};   ///< written by [render]
    std::atomic<std::uint64_t> refused_{0};  ///< written by [render]
    std::atomic<std::uint64_t> tooLong_{0};  ///< written by [render]
    std::atomic<std::uint64_t> lost_{0};     ///< written by [render]
};

}  // namespace quillo
