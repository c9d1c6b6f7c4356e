// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/lv2/LV2EventReader.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

#include "platform/RealTime.hpp"

namespace quillo {

namespace {

/// What is left behind so many bytes and what pads them; the last ones may go without.
std::span<const std::uint8_t> behind(std::span<const std::uint8_t> bytes, std::size_t size) QUILLO_REALTIME {
    return bytes.subspan(std::min(lv2Padded(size), bytes.size()));
}

/// The value whose bytes these begin with. There must be enough.
template <class Value>
Value valueAt(std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    Value value;
    std::memcpy(&value, bytes.data(), sizeof(Value));
    return value;
}

template <class Number>
std::optional<double> numberFrom(std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    if (bytes.size() != sizeof(Number)) {
        return std::nullopt;
    }
    const auto number = static_cast<double>(valueAt<Number>(bytes));
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

LV2EventReader::LV2EventReader(const LV2_Atom_Sequence* sequence, LV2_URID sequenceType) QUILLO_REALTIME {
    if (sequence == nullptr || sequence->atom.type != sequenceType ||
        sequence->atom.size < sizeof(LV2_Atom_Sequence_Body)) {
        return;
    }
    const auto* events = reinterpret_cast<const std::uint8_t*>(sequence + 1);
    left_ = {events, sequence->atom.size - sizeof(LV2_Atom_Sequence_Body)};
}

std::optional<LV2Event> LV2EventReader::next() QUILLO_REALTIME {
    if (left_.size() < sizeof(LV2_Atom_Event)) {
        return std::nullopt;
    }
    const auto head = valueAt<LV2_Atom_Event>(left_);
    const auto rest = left_.subspan(sizeof(LV2_Atom_Event));
    if (rest.size() < head.body.size) {
        return std::nullopt;
    }
    left_ = behind(rest, head.body.size);
    return LV2Event{head.time.frames, head.body.type, rest.first(head.body.size)};
}

std::optional<LV2Position> LV2Position::from(std::span<const std::uint8_t> body,
                                             const LV2URIDs& ids) QUILLO_REALTIME {
    if (body.size() < sizeof(LV2_Atom_Object_Body) ||
        valueAt<LV2_Atom_Object_Body>(body).otype != ids.timePosition) {
        return std::nullopt;
    }
    LV2Position position;
    auto left = body.subspan(sizeof(LV2_Atom_Object_Body));
    while (left.size() >= sizeof(LV2_Atom_Property_Body)) {
        const auto property = valueAt<LV2_Atom_Property_Body>(left);
        const auto rest = left.subspan(sizeof(LV2_Atom_Property_Body));
        if (rest.size() < property.value.size) {
            break;
        }
        if (property.key == ids.timeSpeed) {
            position.speed = numberFrom(property.value.type, rest.first(property.value.size), ids);
        } else if (property.key == ids.timeFrame) {
            position.frame = numberFrom(property.value.type, rest.first(property.value.size), ids);
        }
        left = behind(rest, property.value.size);
    }
    return position;
}

}  // namespace quillo
