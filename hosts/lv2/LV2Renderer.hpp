// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstdint>

#include "hosts/lv2/LV2EventReader.hpp"
#include "hosts/lv2/LV2Output.hpp"
#include "hosts/lv2/LV2URIDs.hpp"
#include "platform/RealTime.hpp"
#include "session/BlockRenderer.hpp"

namespace quillo {

/// What the host's audio thread runs: a block of LV2 events through the rules.
///
/// An event that is no MIDI message and no position is left out, and so is what is not exactly one message;
/// one whose time lies outside the block or before that of the one before is moved to the nearest that does
/// not. A position holds until the next one: what an object does not report goes on as it was.
///
/// [render] unless an operation says otherwise.
class LV2Renderer {
public:
    /// Off by more than this, a position is a jump: hosts count in frames but may round.
    static constexpr double tolerance = 1.0;

    /// [main] Both must outlive it.
    LV2Renderer(BlockRenderer& renderer, const LV2URIDs& ids);

    /// [any] Notifies the host, once, that the state has changed: in the first block with room for it.
    void announceEdit() QUILLO_REALTIME { edited_ = true; }

    /// The blocks that follow need not join those before.
    void interrupt() QUILLO_REALTIME { renderer_.losePosition(); }

    /// One block. Both buffers may be null, and may be the same.
    void render(const LV2_Atom_Sequence* in, LV2_Atom_Sequence* out, std::uint32_t frames) QUILLO_REALTIME;

    /// A block of a host that has not activated the plug-in: nothing is sent.
    void renderNothing(LV2_Atom_Sequence* out) QUILLO_REALTIME;

private:
    void take(const LV2Event& event) QUILLO_REALTIME;
    void takePosition(std::uint32_t offset, std::span<const std::uint8_t> body) QUILLO_REALTIME;

    BlockRenderer& renderer_;
    const LV2URIDs& ids_;
    LV2Output output_;
    double speed_ = 0.0;  ///< as it was reported last
    double pace_ = 1.0;   ///< by which the position moves on whenever it moves
    std::atomic<bool> edited_{false};
};

}  // namespace quillo
