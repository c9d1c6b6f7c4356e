// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/SystemExclusiveAssembler.hpp"

#include <algorithm>

#include "midi/Status.hpp"

namespace quillo {

namespace {

/// Whether the event has to be looked at byte by byte.
bool isPiece(std::span<const std::uint8_t> event) QUILLO_REALTIME {
    const auto first = event.front();
    return midi::isData(first) || first == midi::systemExclusive || first == midi::endOfExclusive ||
           (midi::isRealTime(first) && event.size() > 1);
}

bool isWhole(std::span<const std::uint8_t> event) QUILLO_REALTIME {
    return event.size() > 1 && midi::isSystemExclusive(event) && event.back() == midi::endOfExclusive &&
           std::ranges::all_of(event.subspan(1, event.size() - 2), midi::isData);
}

}  // namespace

SystemExclusiveAssembler::SystemExclusiveAssembler() : bytes_(2 * longestMessage) {}

void SystemExclusiveAssembler::beginCycle() QUILLO_REALTIME {
    if (begin_ == 0) {
        return;
    }
    std::copy(bytes_.data() + begin_, bytes_.data() + end_, bytes_.data());
    end_ -= begin_;
    begin_ = 0;
}

void SystemExclusiveAssembler::take(std::span<const std::uint8_t> event, Deliver deliver) QUILLO_REALTIME {
    if (event.empty()) {
        return;
    }
    if (isPiece(event) && !isWhole(event)) {
        takePiece(event, deliver);
        return;
    }
    if (!midi::isRealTime(event.front())) {
        abandon();
    }
    deliver(event);
}

void SystemExclusiveAssembler::takePiece(std::span<const std::uint8_t> piece, Deliver deliver)
    QUILLO_REALTIME {
    for (std::size_t index = 0; index < piece.size(); ++index) {
        const auto byte = piece[index];
        if (midi::isData(byte)) {
            append(byte);
        } else if (byte == midi::systemExclusive) {
            open();
        } else if (byte == midi::endOfExclusive) {
            close(deliver);
        } else if (midi::isRealTime(byte)) {
            deliver(piece.subspan(index, 1));
        } else {
            abandon();
            deliver(piece.subspan(index));
            return;
        }
    }
}

void SystemExclusiveAssembler::open() QUILLO_REALTIME {
    abandon();
    isOpen_ = true;
    append(midi::systemExclusive);
}

void SystemExclusiveAssembler::append(std::uint8_t byte) QUILLO_REALTIME {
    if (!isOpen_) {
        return;
    }
    if (end_ - begin_ == longestMessage || end_ == bytes_.size()) {
        abandon();
        return;
    }
    bytes_[end_++] = byte;
}

void SystemExclusiveAssembler::close(Deliver deliver) QUILLO_REALTIME {
    append(midi::endOfExclusive);
    if (!isOpen_) {
        return;
    }
    deliver(std::span(bytes_).subspan(begin_, end_ - begin_));
    begin_ = end_;
    isOpen_ = false;
}

void SystemExclusiveAssembler::abandon() QUILLO_REALTIME {
    end_ = begin_;
    isOpen_ = false;
}

}  // namespace quillo
