// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/RealTime.hpp"
#include "platform/RealTimeFunction.hpp"

namespace quillo {

/// Puts together system-exclusive messages that come in pieces. JACK hands every other message over whole, but
/// cuts a long one of these: only the first piece has the 0xF0, only the last the 0xF7, the pieces may lie
/// cycles apart, and real-time messages may stand between them or in their midst.
///
/// A message that another one cuts short, a piece without a beginning and a message longer than
/// `longestMessage` are left out. [render], save for making one.
class SystemExclusiveAssembler {
public:
    /// In bytes, from 0xF0 to 0xF7.
    static constexpr std::size_t longestMessage = 65536;

    /// Takes one whole message. The bytes live until the next `beginCycle`, or as long as the event that they
    /// came with.
    using Deliver = RealTimeFunctionRef<void(std::span<const std::uint8_t> message)>;

    SystemExclusiveAssembler();

    /// A cycle begins: nobody needs the messages of the last one any more.
    void beginCycle() QUILLO_REALTIME;

    /// Takes one event as JACK hands it over, and delivers what has become whole by it, in order.
    void take(std::span<const std::uint8_t> event, Deliver deliver) QUILLO_REALTIME;

private:
    void takePiece(std::span<const std::uint8_t> piece, Deliver deliver) QUILLO_REALTIME;
    void open() QUILLO_REALTIME;
    void append(std::uint8_t byte) QUILLO_REALTIME;
    void close(Deliver deliver) QUILLO_REALTIME;
    void abandon() QUILLO_REALTIME;

    std::vector<std::uint8_t> bytes_;
    std::size_t begin_ = 0;  ///< of the message under way; before it lie those that were delivered
    std::size_t end_ = 0;
    bool isOpen_ = false;
};

}  // namespace quillo
