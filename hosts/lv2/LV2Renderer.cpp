// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/lv2/LV2Renderer.hpp"

#include <algorithm>
#include <limits>

namespace quillo {

namespace {

std::uint32_t offsetOf(std::int64_t time) QUILLO_REALTIME {
    constexpr std::int64_t last = std::numeric_limits<std::uint32_t>::max();
    return static_cast<std::uint32_t>(std::clamp(time, std::int64_t{0}, last));
}

}  // namespace

LV2Renderer::LV2Renderer(BlockRenderer& renderer, const LV2URIDs& ids)
    : renderer_(renderer), ids_(ids), output_(ids) {}

void LV2Renderer::render(const LV2_Atom_Sequence* in, LV2_Atom_Sequence* out,
                         std::uint32_t frames) QUILLO_REALTIME {
    using Delivery = BlockRenderer::Delivery;
    output_.begin(out, in == out);
    renderer_.begin(frames, output_, in == out ? Delivery::atTheEnd : Delivery::asItComes);
    LV2EventReader events(in, ids_.atomSequence);
    while (const auto event = events.next()) {
        take(*event);
    }
    renderer_.end();
    if (edited_ && output_.tryWriteStateChanged(frames == 0 ? 0 : frames - 1)) {
        edited_ = false;
    }
    output_.end();
}

void LV2Renderer::renderNothing(LV2_Atom_Sequence* out) QUILLO_REALTIME {
    output_.begin(out);
    output_.end();
}

void LV2Renderer::take(const LV2Event& event) QUILLO_REALTIME {
    if (event.type == ids_.midiEvent) {
        renderer_.receive(offsetOf(event.time), event.body);
    } else if (event.type == ids_.atomObject || event.type == ids_.atomBlank) {
        takePosition(offsetOf(event.time), event.body);
    }
}

/// Where a speed is reported without a frame, and is another one than the position moves on with, the next
/// frame cannot be predicted.
void LV2Renderer::takePosition(std::uint32_t offset, std::span<const std::uint8_t> body) QUILLO_REALTIME {
    const auto reported = LV2Position::from(body, ids_);
    if (!reported || (!reported->speed && !reported->frame)) {
        return;
    }
    speed_ = reported->speed.value_or(speed_);
    const bool moves = speed_ != 0.0;
    const HostTransport::State state{.isMoving = moves};
    if (reported->frame) {
        pace_ = moves ? speed_ : 1.0;
        renderer_.reportTransport(offset, state, *reported->frame, pace_);
    } else {
        renderer_.reportTransport(offset, state);
        if (moves && speed_ != pace_) {
            renderer_.losePosition();
        }
    }
}

}  // namespace quillo
