// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/lv2/LV2Renderer.hpp"

#include <algorithm>
#include <limits>

#include "hosts/lv2/LV2Position.hpp"

namespace quillo {

namespace {

std::uint32_t offsetOf(std::int64_t time) QUILLO_REALTIME {
    constexpr std::int64_t last = std::numeric_limits<std::uint32_t>::max();
    return static_cast<std::uint32_t>(std::clamp(time, std::int64_t{0}, last));
}

}  // namespace

LV2Renderer::LV2Renderer(BlockRenderer& renderer, const LV2URIDs& ids)
    : renderer_(renderer), ids_(ids), output_(ids) {
    renderer_.setAsk([this](std::uint32_t, std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
        if (output_.tryReserve(bytes.size())) {
            return BlockRenderer::Room::enough;
        }
        return output_.couldHold(bytes.size()) ? BlockRenderer::Room::full : BlockRenderer::Room::never;
    });
}

void LV2Renderer::render(const LV2_Atom_Sequence* in, LV2_Atom_Sequence* out,
                         std::uint32_t frames) QUILLO_REALTIME {
    output_.begin(out);
    if (edited_ && output_.tryReserveStateChanged()) {
        edited_ = false;
    }
    renderer_.begin(frames);
    LV2EventReader events(in, ids_.atomSequence);
    while (const auto event = events.next()) {
        take(*event);
    }
    renderer_.end();
    output_.end(renderer_.outgoing().inTimeOrder());
}

void LV2Renderer::renderNothing(LV2_Atom_Sequence* out) QUILLO_REALTIME {
    output_.begin(out);
    output_.end({});
}

void LV2Renderer::take(const LV2Event& event) QUILLO_REALTIME {
    if (event.type == ids_.midiEvent) {
        renderer_.receive(offsetOf(event.time), event.body);
    } else if (event.type == ids_.atomObject || event.type == ids_.atomBlank) {
        takePosition(offsetOf(event.time), event.body);
    }
}

/// Where a speed is told without a frame, and is another one than the position moves on with, the next frame
/// is one that could not be foretold.
void LV2Renderer::takePosition(std::uint32_t offset, std::span<const std::uint8_t> body) QUILLO_REALTIME {
    const auto told = LV2Position::from(body, ids_);
    if (!told || (!told->speed && !told->frame)) {
        return;
    }
    speed_ = told->speed.value_or(speed_);
    const bool moves = speed_ != 0.0;
    const AUHostTransportStateFlags flags = moves ? AUHostTransportStateMoving : 0;
    if (told->frame) {
        pace_ = moves ? speed_ : 1.0;
        renderer_.tellTransport(offset, flags, *told->frame, pace_);
        return;
    }
    renderer_.tellTransport(offset, flags);
    if (moves && speed_ != pace_) {
        renderer_.loseTransport();
    }
}

}  // namespace quillo
