// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "hosts/adapter/BlockRenderer.hpp"
#include "hosts/adapter/OutgoingMessages.hpp"
#include "hosts/clap/CLAPHeaders.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

/// Hands messages to a host, which may have no room for them: those wait, and are offered first of all in the
/// blocks that follow, until it has taken them. While any wait there is no room for new ones, so that no message
/// overtakes another and never more wait than left in one block. [render], save for making one.
class CLAPOutput {
public:
    /// A new block, with the host's list for it: null has no room. Offers what waits, due at the block's start.
    void begin(const clap_output_events_t* events) QUILLO_REALTIME;

    /// Whether messages wait.
    [[nodiscard]] bool isWaiting() const QUILLO_REALTIME { return next_ < kept_; }

    /// The messages of the block, in the order of time; none while messages wait.
    void send(std::span<const OutgoingMessages::Message> messages) QUILLO_REALTIME;

private:
    [[nodiscard]] bool tryPush(const OutgoingMessages::Message& message) const QUILLO_REALTIME;
    [[nodiscard]] bool tryPush(const clap_event_header_t& event) const QUILLO_REALTIME;

    const clap_output_events_t* events_ = nullptr;
    OutgoingMessages waiting_{BlockRenderer::outgoingCapacity, BlockRenderer::outgoingBytes};
    std::size_t kept_ = 0;
    std::size_t next_ = 0;  ///< of those that were kept, the first that the host has not taken
};

}  // namespace quillo
