// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "hosts/lv2/LV2URIDs.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

/// What an object of the type `time:Position` tells: hosts leave out what they do not know, or what has not
/// changed. Numbers of any of the four types are taken; one that is not finite is not told.
struct LV2Position {
    std::optional<double> speed;  ///< 0 when the transport stands still
    std::optional<double> frame;  ///< below zero before the beginning

    /// [render] Nothing when the bytes are the body of another object, or of none. Properties that end behind
    /// the bytes are left out.
    [[nodiscard]] static std::optional<LV2Position> from(std::span<const std::uint8_t> body,
                                                         const LV2URIDs& ids) QUILLO_REALTIME;
};

}  // namespace quillo
