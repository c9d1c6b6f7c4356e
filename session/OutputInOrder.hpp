// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "platform/RealTime.hpp"
#include "session/HostOutput.hpp"
#include "session/MessageStore.hpp"
#include "session/SoundingNotes.hpp"

namespace quillo {

/// Brings what is sent during one block to the host in order of time, messages of one time in the order in
/// which they were sent. What is due goes straight on; what is due later in the block waits until then, and
/// its room with it. [render], save for making one.
class OutputInOrder {
public:
    /// Whether the host's output can be written while its input is still read.
    enum class Delivery : std::uint8_t { asItComes, atTheEnd };

    OutputInOrder();

    /// The block begins.
    void begin(HostOutput& host, Delivery delivery) QUILLO_REALTIME;

    /// Sends a message, due `offset` frames after the block's start; one whose time has passed is due now. It
    /// is not sent when the host, or the store of those that wait, has no room for it.
    [[nodiscard]] HostOutput::Room trySend(std::uint32_t offset,
                                           std::span<const std::uint8_t> bytes) QUILLO_REALTIME;

    /// Time has come as far as this frame: what is due until then, it included, leaves.
    void passTo(std::uint32_t offset) QUILLO_REALTIME;

    /// The block ends, and all that waits leaves.
    void end() QUILLO_REALTIME;

    /// What all that has left since this was made lets sound.
    [[nodiscard]] const SoundingNotes& sounding() const QUILLO_REALTIME { return sounding_; }

private:
    [[nodiscard]] bool isDue(std::uint32_t offset) const QUILLO_REALTIME {
        return offset <= passed_ && delivery_ == Delivery::asItComes;
    }
    void keep(std::uint32_t offset, std::span<const std::uint8_t> bytes) QUILLO_REALTIME;
    void writeUntil(std::uint32_t offset) QUILLO_REALTIME;
    void writeFirst() QUILLO_REALTIME;
    void write(std::uint32_t offset, std::span<const std::uint8_t> bytes) QUILLO_REALTIME;

    HostOutput* host_ = nullptr;
    Delivery delivery_ = Delivery::asItComes;
    std::uint32_t passed_ = 0;
    HostOutput::Waiting waiting_;
    SoundingNotes sounding_;
    MessageStore store_;

    /// A heap with the first to leave on top, of as many keys as messages wait: the offset above the number
    /// in the store, which says which of two came first.
    std::unique_ptr<std::uint64_t[]> heap_ =
        std::make_unique_for_overwrite<std::uint64_t[]>(MessageStore::mostMessages);
};

}  // namespace quillo
