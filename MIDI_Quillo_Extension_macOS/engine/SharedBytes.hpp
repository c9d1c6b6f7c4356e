// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/RealTime.hpp"

namespace quillo {

/// The bytes of a long message, counted by its holders. The last holder may be the render thread, which must
/// not free: it puts the bytes on a lock-free list of retired ones, and another thread frees them.
class SharedBytes {
public:
    /// [any but render] One holder: the caller. Frees what was retired before, so that retired storage never
    /// outgrows what was in use.
    [[nodiscard]] static SharedBytes* make(std::span<const std::uint8_t> bytes);

    SharedBytes(const SharedBytes&) = delete;
    SharedBytes& operator=(const SharedBytes&) = delete;

    /// One holder more.
    void hold() QUILLO_REALTIME;

    /// One holder less; the last one retires the bytes.
    void release() QUILLO_REALTIME;

    [[nodiscard]] std::span<const std::uint8_t> bytes() const QUILLO_REALTIME;

    /// [any but render] Frees all that was retired.
    static void freeRetired();

private:
    explicit SharedBytes(std::span<const std::uint8_t> bytes) : bytes_(bytes.begin(), bytes.end()) {}
    ~SharedBytes() = default;

    /// The head of the list of retired bytes. A retiring thread writes what it held before its store here
    /// (release); the freeing thread takes the whole list at once (acquire), so no link is ever reused under
    /// somebody's hands.
    static std::atomic<SharedBytes*> retired_;

    std::vector<std::uint8_t> bytes_;
    std::atomic<std::size_t> holders_{1};
    SharedBytes* nextRetired_ = nullptr;
};

}  // namespace quillo
