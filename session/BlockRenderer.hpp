// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "engine/Cycle.hpp"
#include "engine/RuleProcessor.hpp"
#include "engine/SampleTime.hpp"
#include "log/LogCallback.hpp"
#include "platform/OSStatus.hpp"
#include "platform/RealTime.hpp"
#include "session/HostOutput.hpp"
#include "session/HostTransport.hpp"
#include "session/OutputInOrder.hpp"
#include "session/OwedMessages.hpp"
#include "session/RefusedMessages.hpp"
#include "session/RenderRequests.hpp"
#include "session/WaitingSnapshot.hpp"

namespace quillo {

/// The rules as a host sees them that works in blocks: what comes in and goes out has an offset in the block,
/// in frames, and there is no clock. The renderer keeps the render timeline: it counts the frames rendered
/// since it was made, and nothing ever sets it back. A block is one cycle of the processor.
///
///     renderer.begin(frames, output);
///     renderer.reportTransport(0, state, position);
///     renderer.receive(17, bytes);
///     const auto status = renderer.end();
///
/// Offsets come in ascending order: one that lies behind the block, or before an earlier one, is moved to the
/// nearest that does not. What the rules send goes to the output in order of time, at the block's start when
/// it was due before.
///
/// A message for which the output has no room is refused, and the first one ends the cycle with the status
/// `kQuilloErr_OutputFull`. System exclusive that never has room is left out instead, and the cycle goes on
/// as if it had been sent: it would be refused every time, and take the rest of its block with it, the
/// ends of notes among it.
///
/// It keeps which notes have gone out and not ended. When that is asked for, their note-offs and the releases
/// of pedals leave at the start of the next block, before all else, and are never refused: what finds no room
/// is owed to the block after.
///
/// [render], save for making one.
class BlockRenderer {
public:
    using Delivery = OutputInOrder::Delivery;

    /// All must outlive it.
    BlockRenderer(RuleProcessor& processor, const LogCallback& logInput, const LogCallback& logOutput,
                  HostTransport transport);
    BlockRenderer(const BlockRenderer&) = delete;
    BlockRenderer& operator=(const BlockRenderer&) = delete;

    /// A block of so many frames, which may be none: then it is a cycle of one frame all the same, so that
    /// what is due now leaves now, and the next block begins with that frame.
    void begin(std::uint32_t frames, HostOutput& output,
               Delivery delivery = Delivery::asItComes) QUILLO_REALTIME;

    /// A block in which messages only `pass`: it is no cycle, and the render timeline stands still.
    void beginPassing(std::uint32_t frames, HostOutput& output, Delivery delivery) QUILLO_REALTIME;

    /// One message from the host. What is not exactly one message is left out, and so is system exclusive: no
    /// rule sees it, and it does not pass.
    void receive(std::uint32_t offset, std::span<const std::uint8_t> bytes) QUILLO_REALTIME;

    /// One message that passes as it is, seen by no rule and in no log; dropped when there is no room.
    void pass(std::uint32_t offset, std::span<const std::uint8_t> bytes) QUILLO_REALTIME;

    /// What the host says of its transport, as `HostTransport::report` takes it, from this offset on.
    void reportTransport(std::uint32_t offset, HostTransport::State state, double position,
                         double speed = 1.0) QUILLO_REALTIME;
    void reportTransport(std::uint32_t offset, HostTransport::State state) QUILLO_REALTIME;

    /// The same as `HostTransport::reportContinued` takes it.
    void reportTransportContinued(std::uint32_t offset, HostTransport::State state, double position,
                                  double speed = 1.0) QUILLO_REALTIME;

    /// As the transport's operations of these names: for hosts that may have let frames pass without a block.
    void losePosition() QUILLO_REALTIME { transport_.losePosition(); }
    void forgetTransport() QUILLO_REALTIME { transport_.forget(); }

    /// The block ends, and all that waits in it leaves. The first status other than `noErr`.
    OSStatus end() QUILLO_REALTIME;

    /// [render, main] The messages that the host had no room for.
    [[nodiscard]] RefusedMessages& refused() QUILLO_REALTIME { return refused_; }

    /// [any] What is asked for here is done when the next block begins, be it a cycle or not: the end of the
    /// notes that sound, as when a host stops listening; a panic, which also cancels all that waits and
    /// silences every channel that was used; the cancellation of delayed outputs; and that the rules count as
    /// loaded in the next cycle, though others were before.
    [[nodiscard]] RenderRequests& requests() QUILLO_REALTIME { return requests_; }

    /// [render, main] Copies of the delayed outputs that wait.
    [[nodiscard]] WaitingSnapshot& snapshot() QUILLO_REALTIME { return snapshot_; }

    /// [any] How many of them waited at the end of the last cycle, or wait since all were cancelled: none.
    [[nodiscard]] std::size_t waitingOutputs() const { return waitingOutputs_; }

    /// [any] Whether one was ever lost because there was no room left for it to wait.
    [[nodiscard]] bool hasLostOutputs() const { return hasLostOutputs_; }

    /// [any] How far the last block has come on the render timeline.
    [[nodiscard]] SampleTime reached() const { return reached_; }

    /// Whether a block without messages would have something to end or to answer.
    [[nodiscard]] bool isOwing() const QUILLO_REALTIME { return owed_.any() || requests_.any(); }

    /// Whether what has gone out lets a note sound or a pedal be down.
    [[nodiscard]] bool isSounding() const QUILLO_REALTIME { return output_.sounding().any(); }

    /// The transport as it is where the rendering stands.
    [[nodiscard]] const HostTransport& transport() const QUILLO_REALTIME { return transport_; }

    /// The block's first sample on the render timeline; after `end`, the next block's.
    [[nodiscard]] SampleTime now() const QUILLO_REALTIME { return blockStart_; }

private:
    /// The cycle's output function.
    struct Send {
        using Messages = std::span<const MIDIMessage>;

        BlockRenderer& renderer;
        OSStatus operator()(SampleTime time, std::uint8_t cable, Messages messages) const QUILLO_REALTIME;
    };

    void goTo(std::uint32_t offset) QUILLO_REALTIME;
    void serve(RenderRequests::Kinds asked) QUILLO_REALTIME;
    std::size_t cancelDelayed() QUILLO_REALTIME;
    void sendOwed() QUILLO_REALTIME;
    void settle(std::span<const std::uint8_t> bytes) QUILLO_REALTIME;
    void fireTransport() QUILLO_REALTIME;
    void fire(HostTransportTriggerVariantsV2 change) QUILLO_REALTIME;
    OSStatus send(SampleTime time, const MIDIMessage& message) QUILLO_REALTIME;
    [[nodiscard]] std::uint32_t offsetOf(SampleTime time) const QUILLO_REALTIME;
    [[nodiscard]] SampleTime time() const QUILLO_REALTIME { return blockStart_ + offset_; }

    RuleProcessor& processor_;
    const LogCallback& logInput_;
    const LogCallback& logOutput_;
    HostTransport transport_;
    OutputInOrder output_;
    RefusedMessages refused_;
    RenderRequests requests_;
    OwedMessages owed_;
    std::optional<PanicResult> panic_;  ///< until everything that it has to send has left
    WaitingSnapshot snapshot_;
    std::atomic<std::size_t> waitingOutputs_{0};
    std::atomic<bool> hasLostOutputs_{false};
    std::atomic<SampleTime> reached_{0};
    Send send_{*this};
    std::optional<Cycle> cycle_;  ///< from `begin` to `end`, unless messages only pass
    SampleTime blockStart_ = 0;
    std::uint32_t frames_ = 0;  ///< of the block
    std::uint32_t offset_ = 0;  ///< how far the block has been rendered
};

}  // namespace quillo
