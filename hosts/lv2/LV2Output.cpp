// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/lv2/LV2Output.hpp"

#include <cstring>

#include "hosts/lv2/LV2Bytes.hpp"

namespace quillo {

void LV2Output::begin(LV2_Atom_Sequence* buffer) QUILLO_REALTIME {
    buffer_ = buffer;
    capacity_ = buffer == nullptr ? 0 : buffer->atom.size;
    taken_ = sizeof(LV2_Atom_Sequence);
    stateChanged_ = false;
}

bool LV2Output::tryTake(std::size_t bodySize) QUILLO_REALTIME {
    const auto size = sizeof(LV2_Atom_Event) + lv2Padded(bodySize);
    if (capacity_ < taken_ || capacity_ - taken_ < size) {
        return false;
    }
    taken_ += size;
    return true;
}

bool LV2Output::tryReserve(std::size_t bytes) QUILLO_REALTIME {
    return tryTake(bytes);
}

bool LV2Output::couldHold(std::size_t bytes) const QUILLO_REALTIME {
    return sizeof(LV2_Atom_Sequence) + sizeof(LV2_Atom_Event) + lv2Padded(bytes) <= capacity_;
}

bool LV2Output::tryReserveStateChanged() QUILLO_REALTIME {
    stateChanged_ = tryTake(sizeof(LV2_Atom_Object_Body));
    return stateChanged_;
}

/// A buffer that is too short even for a sequence without events gets the atom that is nothing.
void LV2Output::end(std::span<const OutgoingMessages::Message> messages) QUILLO_REALTIME {
    if (buffer_ == nullptr) {
        return;
    }
    if (capacity_ < sizeof(LV2_Atom_Sequence)) {
        buffer_->atom = {0, 0};
        return;
    }
    written_ = sizeof(LV2_Atom_Sequence);
    if (stateChanged_) {
        writeStateChanged();
    }
    for (const auto& message : messages) {
        write(message.offset, ids_.midiEvent, message.bytes);
    }
    buffer_->atom = {static_cast<std::uint32_t>(written_ - sizeof(LV2_Atom)), ids_.atomSequence};
    buffer_->body = {0, 0};
}

void LV2Output::writeStateChanged() QUILLO_REALTIME {
    const LV2_Atom_Object_Body object{0, ids_.stateChanged};
    write(0, ids_.atomObject, {reinterpret_cast<const std::uint8_t*>(&object), sizeof(object)});
}

/// The last word is cleared before anything is written: the body may leave the end of it open.
void LV2Output::write(std::uint32_t offset, LV2_URID type, std::span<const std::uint8_t> body)
    QUILLO_REALTIME {
    constexpr std::uint64_t clear = 0;
    const auto size = sizeof(LV2_Atom_Event) + lv2Padded(body.size());
    auto* place = reinterpret_cast<std::uint8_t*>(buffer_) + written_;
    LV2_Atom_Event head{};
    head.time.frames = offset;
    head.body = {static_cast<std::uint32_t>(body.size()), type};
    std::memcpy(place + size - sizeof(clear), &clear, sizeof(clear));
    std::memcpy(place, &head, sizeof(head));
    std::memcpy(place + sizeof(head), body.data(), body.size());
    written_ += size;
}

}  // namespace quillo
