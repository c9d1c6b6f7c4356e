// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/lv2/LV2Position.hpp"

#include <cmath>

#include "hosts/lv2/LV2Bytes.hpp"

namespace quillo {

namespace {

template <class Number>
std::optional<double> numberFrom(std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    if (bytes.size() != sizeof(Number)) {
        return std::nullopt;
    }
    const auto number = static_cast<double>(lv2Value<Number>(bytes));
    return std::isfinite(number) ? std::optional(number) : std::nullopt;
}

std::optional<double> numberFrom(LV2_URID type, std::span<const std::uint8_t> bytes,
                                 const LV2URIDs& ids) QUILLO_REALTIME {
    if (type == ids.atomLong) {
        return numberFrom<std::int64_t>(bytes);
    }
    if (type == ids.atomFloat) {
        return numberFrom<float>(bytes);
    }
    if (type == ids.atomDouble) {
        return numberFrom<double>(bytes);
    }
    return type == ids.atomInt ? numberFrom<std::int32_t>(bytes) : std::nullopt;
}

}  // namespace

std::optional<LV2Position> LV2Position::from(std::span<const std::uint8_t> body,
                                             const LV2URIDs& ids) QUILLO_REALTIME {
    if (body.size() < sizeof(LV2_Atom_Object_Body) ||
        lv2Value<LV2_Atom_Object_Body>(body).otype != ids.timePosition) {
        return std::nullopt;
    }
    LV2Position position;
    auto left = body.subspan(sizeof(LV2_Atom_Object_Body));
    while (left.size() >= sizeof(LV2_Atom_Property_Body)) {
        const auto property = lv2Value<LV2_Atom_Property_Body>(left);
        const auto rest = left.subspan(sizeof(LV2_Atom_Property_Body));
        if (rest.size() < property.value.size) {
            break;
        }
        if (property.key == ids.timeSpeed) {
            position.speed = numberFrom(property.value.type, rest.first(property.value.size), ids);
        } else if (property.key == ids.timeFrame) {
            position.frame = numberFrom(property.value.type, rest.first(property.value.size), ids);
        }
        left = lv2Behind(rest, property.value.size);
    }
    return position;
}

}  // namespace quillo
