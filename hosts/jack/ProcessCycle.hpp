// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>

#include "hosts/jack/MIDIPorts.hpp"
#include "platform/RealTime.hpp"
#include "session/BlockRenderer.hpp"
#include "session/HostOutput.hpp"

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

/// What a cycle of the server does with the rules: the events of the input port go in at their frames, what
/// the rules send leaves through the output port. All that the process thread owns is here; it outlives the
/// clients that come and go with the server.
class ProcessCycle {
public:
    /// The renderer must outlive it.
    explicit ProcessCycle(BlockRenderer& renderer) : renderer_(renderer) {}
    ProcessCycle(const ProcessCycle&) = delete;
    ProcessCycle& operator=(const ProcessCycle&) = delete;

    /// [main] While no cycle runs: nothing is rendered from the first cycle on, nothing goes in or out.
    void hold();

    /// [main] Lets it render. Connections that were made before this call are there in the first cycle that
    /// is rendered: the server needs a cycle to put them in force.
    void release() { cyclesToHold_ = cyclesUntilConnected; }

    /// [main] From the next cycle on, and until it is held, nothing comes in, and all that goes out are the
    /// ends of the notes that sound.
    void finish() { isFinishing_ = true; }

    /// [any] Whether these have gone out, in a cycle that is over.
    [[nodiscard]] bool isFinished() const { return finishedCycles_ > 1; }

    /// [main] Before the first cycle: a message that is these bytes, or begins with them, is heard as a panic
    /// and by no rule, and does not pass. At first none is.
    void setPanicMessage(std::span<const std::uint8_t> bytes);

    /// [render] One cycle.
    void run(std::uint32_t frames, const ServerTransport& transport, const MIDIInputPort& in,
             MIDIOutputPort& out) QUILLO_REALTIME;

    /// [any] How many cycles have run, held or not, since this was made.
    [[nodiscard]] std::uint64_t cycles() const { return cycles_; }
    /// [any] How many events were lost on their way into the input port.
    [[nodiscard]] std::uint64_t lost() const { return lost_; }

private:
    static constexpr std::uint32_t forever = 0xFFFFFFFF;
    static constexpr std::uint32_t cyclesUntilConnected = 2;

    [[nodiscard]] bool isHeld() QUILLO_REALTIME;
    void reportTransport(const ServerTransport& transport) QUILLO_REALTIME;
    void receive(const MIDIInputPort& in) QUILLO_REALTIME;
    void receive(std::uint32_t offset, std::span<const std::uint8_t> bytes) QUILLO_REALTIME;
    void receiveMessage(std::uint32_t offset, std::span<const std::uint8_t> bytes) QUILLO_REALTIME;
    void runLast(std::uint32_t frames, HostOutput& output) QUILLO_REALTIME;
    [[nodiscard]] bool isPanic(std::span<const std::uint8_t> bytes) const QUILLO_REALTIME;

    BlockRenderer& renderer_;
    ServerTransport last_;  ///< of the cycle before
    std::array<std::uint8_t, 3> panicMessage_{};
    std::size_t panicLength_ = 0;  ///< 0 when there is no such message
    std::atomic<bool> isFinishing_{false};
    std::atomic<std::uint32_t> finishedCycles_{0};  ///< in which nothing was left to end; written by [render]
    std::atomic<std::uint32_t> cyclesToHold_{forever};
    std::atomic<std::uint64_t> cycles_{0};  ///< written by [render]
    std::atomic<std::uint64_t> lost_{0};    ///< written by [render]
};

}  // namespace quillo
