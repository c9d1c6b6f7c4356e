// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>

#include "hosts/adapter/BlockRenderer.hpp"
#include "hosts/adapter/OutgoingMessages.hpp"
#include "hosts/clap/CLAPHeaders.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

/// Hands messages to a host, which may have no room for them: those wait, and are offered first of all in the
/// blocks that follow, until it has taken them. While any wait there is no room for new ones, so that no message
/// overtakes another and never more wait than left in one block.
///
/// System exclusive may be what a host never takes, or one of this length. It is lost, so that the rest goes on, when
/// it is refused first of all in a block and a message behind it is taken; or when none but system exclusive waits.
///
/// [render], save for making one.
class CLAPOutput {
public:
    using Messages = std::span<const OutgoingMessages::Message>;

    /// What is lost goes there.
    explicit CLAPOutput(RefusedMessages& lost) : lost_(lost) {}

    /// A new block, with the host's list for it: null has no room. Offers what waits, due at the block's start.
    void begin(const clap_output_events_t* events) QUILLO_REALTIME;

    /// Whether messages wait.
    [[nodiscard]] bool isWaiting() const QUILLO_REALTIME { return !left_.empty(); }

    /// The messages of the block, in the order of time; none while messages wait.
    void send(Messages messages) QUILLO_REALTIME;

private:
    void keep(Messages messages) QUILLO_REALTIME;
    [[nodiscard]] Messages offerBehindSystemExclusive() QUILLO_REALTIME;
    void lose(Messages messages) QUILLO_REALTIME;
    [[nodiscard]] Messages offer(Messages messages) const QUILLO_REALTIME;
    [[nodiscard]] bool tryPush(const OutgoingMessages::Message& message) const QUILLO_REALTIME;
    [[nodiscard]] bool tryPush(const clap_event_header_t& event) const QUILLO_REALTIME;

    RefusedMessages& lost_;
    const clap_output_events_t* events_ = nullptr;
    OutgoingMessages waiting_{BlockRenderer::outgoingCapacity, BlockRenderer::outgoingBytes};
    Messages left_;  ///< of those that wait, what the host has not taken
};

}  // namespace quillo
