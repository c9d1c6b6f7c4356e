// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/SharedBytes.hpp"

namespace quillo {

namespace {

/// Frees what is left when the binary goes, which a plug-in's does while its host stays.
struct LastFree {
    ~LastFree() { SharedBytes::freeRetired(); }
};

const LastFree lastFree;

}  // namespace

std::atomic<SharedBytes*> SharedBytes::retired_{nullptr};

SharedBytes* SharedBytes::make(std::span<const std::uint8_t> bytes) {
    freeRetired();
    return new SharedBytes(bytes);
}

void SharedBytes::hold() QUILLO_REALTIME {
    holders_.fetch_add(1, std::memory_order_relaxed);
}

void SharedBytes::release() QUILLO_REALTIME {
    if (holders_.fetch_sub(1, std::memory_order_acq_rel) != 1) {
        return;
    }
    nextRetired_ = retired_.load(std::memory_order_relaxed);
    while (!retired_.compare_exchange_weak(nextRetired_, this, std::memory_order_release,
                                           std::memory_order_relaxed)) {
    }
}

std::span<const std::uint8_t> SharedBytes::bytes() const QUILLO_REALTIME {
    return bytes_;
}

void SharedBytes::freeRetired() {
    auto* next = retired_.exchange(nullptr, std::memory_order_acquire);
    while (next != nullptr) {
        const auto* retired = next;
        next = next->nextRetired_;
        delete retired;
    }
}

}  // namespace quillo
