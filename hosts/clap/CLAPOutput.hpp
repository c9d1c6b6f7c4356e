// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>

#include "hosts/clap/CLAPHeaders.hpp"
#include "platform/RealTime.hpp"
#include "session/HostOutput.hpp"
#include "session/MessageStore.hpp"
#include "session/RefusedMessages.hpp"

namespace quillo {

/// The only port for messages, each way.
inline constexpr std::uint16_t clapMessagePort = 0;

/// Hands messages to a host, which may have no room for them: then this one, and those that follow in the
/// block, wait, and are offered first of all in the blocks that follow, until the host has taken them. Until
/// then there is no room for new ones, so that no message overtakes another and never more wait than left in
/// one block.
///
/// System exclusive may be what a host never takes, or one of this length. It is lost, so that the rest goes
/// on, when it is refused first of all in a block and a message behind it is taken; or when none but system
/// exclusive waits.
///
/// [render], save for making one.
class CLAPOutput final : public HostOutput {
public:
    /// What is lost goes there.
    explicit CLAPOutput(RefusedMessages& lost) : lost_(lost) {}

    /// A new block, with the host's list for it: null has no room. Offers what waits, due at the block's
    /// start.
    void begin(const clap_output_events_t* events) QUILLO_REALTIME;

    /// Whether messages wait.
    [[nodiscard]] bool isWaiting() const QUILLO_REALTIME { return next_ < waiting_.size(); }

    [[nodiscard]] Room roomFor(Bytes bytes, const Waiting& waiting) const QUILLO_REALTIME override;
    void write(std::uint32_t offset, std::span<const std::uint8_t> bytes) QUILLO_REALTIME override;

private:
    [[nodiscard]] std::size_t offerFrom(std::size_t index) const QUILLO_REALTIME;
    void offerBehindSystemExclusive() QUILLO_REALTIME;
    void loseUntil(std::size_t index) QUILLO_REALTIME;
    [[nodiscard]] bool tryPush(std::uint32_t offset, Bytes bytes) const QUILLO_REALTIME;
    [[nodiscard]] bool tryPush(const clap_event_header_t& event) const QUILLO_REALTIME;

    RefusedMessages& lost_;
    const clap_output_events_t* events_ = nullptr;
    MessageStore waiting_;
    std::size_t next_ = 0;   ///< of those, the first that the host has not taken
    bool isHeldUp_ = false;  ///< messages of an earlier block wait
};

}  // namespace quillo
