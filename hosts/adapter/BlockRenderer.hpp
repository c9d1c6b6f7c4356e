// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "audiounit/MIDIQuilloAUAudioUnit.hpp"
#include "audiounit/platform/RenderEventList.hpp"
#include "engine/SampleTime.hpp"
#include "hosts/adapter/HostTransport.hpp"
#include "hosts/adapter/OutgoingMessages.hpp"
#include "hosts/adapter/RefusedMessages.hpp"
#include "platform/OSStatus.hpp"
#include "platform/RealTime.hpp"
#include "platform/RealTimeFunction.hpp"

namespace quillo {

/// A unit as a host sees it that works in blocks: what comes in and goes out has an offset in the block, in
/// frames, and there is no clock. The renderer keeps the render timeline that the unit needs: it counts the
/// frames rendered since it was made, and nothing ever sets it back.
///
///     renderer.begin(frames);
///     renderer.tellTransport(0, flags, position);
///     renderer.receive(17, bytes);
///     const auto status = renderer.end();
///     for (const auto& message : renderer.outgoing().inTimeOrder()) ...
///
/// A block is one cycle of the unit, save where the transport changes in its midst: there one cycle ends and
/// another begins, because a unit asks for the transport once a cycle. What is sent for a time before the
/// block leaves at its start.
///
/// [render], save for making one and `setAsk`. It takes the unit's transport and output blocks for itself;
/// the unit must not render after the renderer is gone.
class BlockRenderer {
public:
    /// How many MIDI events a cycle can hold; a block with more is rendered in several cycles, which changes
    /// nothing.
    static constexpr std::size_t incomingCapacity = 8192;
    /// How many messages can leave in a block, and how many bytes in all: more is refused.
    static constexpr std::size_t outgoingCapacity = 16384;
    static constexpr std::size_t outgoingBytes = 1U << 20U;

    explicit BlockRenderer(MIDIQuilloAUAudioUnit& unit, HostTransport transport = HostTransport());
    ~BlockRenderer();
    BlockRenderer(const BlockRenderer&) = delete;
    BlockRenderer& operator=(const BlockRenderer&) = delete;

    /// What room a host has for one more message.
    enum class Room : std::uint8_t {
        enough,
        full,  ///< not in this block
        never  ///< not even in a block of its own
    };

    /// The host's room for one more message of these bytes, due at this offset. Asked for each
    /// message in the order in which the unit sends them; the offsets may go back and forth.
    using Ask = RealTimeFunction<Room(std::uint32_t offset, std::span<const std::uint8_t> bytes)>;

    /// [main, while nothing renders] A message for which `ask` has no room is refused, and the unit learns of
    /// it by the status `kQuilloErr_OutputFull`. An absent one finds room for everything.
    ///
    /// System exclusive that never has room is left out instead, and the unit goes on as if it had been sent:
    /// it would be refused again each time, and take the rest of its block with it, the ends of notes among
    /// it.
    void setAsk(Ask ask) { ask_ = std::move(ask); }

    /// A block of so many frames, which may be none: then the unit gets a cycle of one frame all the same, so
    /// that what is due now leaves now, and the next block begins with that frame. What the last one sent is
    /// forgotten.
    void begin(std::uint32_t frames) QUILLO_REALTIME;

    /// One message from the host, in order of the offsets; an offset that lies behind the block or before an
    /// earlier one's is moved to the nearest that does not. The bytes of system exclusive stay valid until
    /// `end`. What is neither exactly one message nor system exclusive is left out, and so is system
    /// exclusive in the end: the unit takes it and looks away.
    void receive(std::uint32_t offset, std::span<const std::uint8_t> bytes) QUILLO_REALTIME;

    /// What the host says of its transport, as `HostTransport::tell` takes it, from this offset on.
    void tellTransport(std::uint32_t offset, AUHostTransportStateFlags flags, double position,
                       double speed = 1.0) QUILLO_REALTIME;
    void tellTransport(std::uint32_t offset, AUHostTransportStateFlags flags) QUILLO_REALTIME;

    /// The same as `HostTransport::follow` takes it.
    void followTransport(std::uint32_t offset, AUHostTransportStateFlags flags, double position,
                         double speed = 1.0) QUILLO_REALTIME;

    /// As `HostTransport::lose`: for hosts that may have let frames pass without a block.
    void loseTransport() QUILLO_REALTIME { transport_.lose(); }

    /// Renders what has not been rendered yet. The first status other than `noErr` of the block's cycles.
    OSStatus end() QUILLO_REALTIME;

    /// What the unit has sent since `begin`.
    [[nodiscard]] OutgoingMessages& outgoing() QUILLO_REALTIME { return outgoing_; }

    /// [render, main] The messages that the host had no room for.
    [[nodiscard]] RefusedMessages& refused() QUILLO_REALTIME { return refused_; }

    /// The transport as it is where the rendering stands.
    [[nodiscard]] const HostTransport& transport() const QUILLO_REALTIME { return transport_; }

    /// The block's first sample on the render timeline; after `end`, the next block's.
    [[nodiscard]] SampleTime now() const QUILLO_REALTIME { return blockStart_; }

private:
    [[nodiscard]] std::uint32_t withinBlock(std::uint32_t offset) const QUILLO_REALTIME;
    [[nodiscard]] SampleTime timeOf(std::uint32_t offset) const QUILLO_REALTIME { return blockStart_ + offset; }
    bool tryReceive(std::uint32_t offset, std::span<const std::uint8_t> bytes) QUILLO_REALTIME;
    void beginCycleFor(std::uint32_t offset) QUILLO_REALTIME;
    void renderUpTo(std::uint32_t offset) QUILLO_REALTIME;
    void renderThrough(std::uint32_t offset) QUILLO_REALTIME;
    void render(std::uint32_t end, std::uint32_t next) QUILLO_REALTIME;
    OSStatus take(SampleTime time, std::span<const std::uint8_t> bytes) QUILLO_REALTIME;
    [[nodiscard]] Room roomFor(std::uint32_t offset, std::span<const std::uint8_t> bytes) const QUILLO_REALTIME;

    MIDIQuilloAUAudioUnit& unit_;
    AUInternalRenderBlock renderBlock_;
    HostTransport transport_;
    Ask ask_;
    RenderEventList incoming_{incomingCapacity};
    OutgoingMessages outgoing_{outgoingCapacity, outgoingBytes};
    RefusedMessages refused_;
    SampleTime blockStart_ = 0;
    std::uint32_t frames_ = 0;      ///< of the block
    std::uint32_t cycleStart_ = 0;  ///< the offset of the first frame that is not rendered
    std::uint32_t lastOffset_ = 0;  ///< of what the host has told so far
    std::uint32_t lag_ = 0;         ///< by how many frames the transport is behind the rendering
    OSStatus status_ = noErr;
};

}  // namespace quillo
