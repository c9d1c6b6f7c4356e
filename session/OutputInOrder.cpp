// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/OutputInOrder.hpp"

#include <algorithm>
#include <functional>

namespace quillo {

namespace {

using Room = HostOutput::Room;
using Bytes = std::span<const std::uint8_t>;

std::size_t roundedUp(std::size_t bytes) QUILLO_REALTIME {
    return (bytes + 7U) & ~std::size_t{7};
}

std::uint64_t keyOf(std::uint32_t offset, std::size_t index) QUILLO_REALTIME {
    return (std::uint64_t{offset} << 32U) | index;
}

}  // namespace

OutputInOrder::OutputInOrder() {
    std::fill_n(heap_.get(), MessageStore::usualMessages, std::uint64_t{0});
}

void OutputInOrder::begin(HostOutput& host, Delivery delivery) QUILLO_REALTIME {
    host_ = &host;
    delivery_ = delivery;
    passed_ = 0;
    waiting_ = {};
    store_.clear();
}

Room OutputInOrder::trySend(std::uint32_t offset, Bytes bytes) QUILLO_REALTIME {
    if (bytes.size() > MessageStore::mostBytes) {
        return Room::never;
    }
    const bool due = isDue(offset);
    const bool isKept = due || store_.hasRoomFor(1, bytes.size());
    const auto room = isKept ? host_->roomFor(bytes, waiting_) : Room::full;
    if (room != Room::enough) {
        return room;
    }
    if (due) {
        write(passed_, bytes);
    } else {
        keep(offset, bytes);
    }
    return room;
}

void OutputInOrder::keep(std::uint32_t offset, Bytes bytes) QUILLO_REALTIME {
    heap_[waiting_.messages++] = keyOf(std::max(offset, passed_), store_.size());
    static_cast<void>(store_.tryPush(bytes));
    waiting_.bytes += roundedUp(bytes.size());
    std::push_heap(heap_.get(), heap_.get() + waiting_.messages, std::greater<>());
}

void OutputInOrder::passTo(std::uint32_t offset) QUILLO_REALTIME {
    if (delivery_ == Delivery::asItComes) {
        writeUntil(offset);
    }
    passed_ = offset;
}

void OutputInOrder::end() QUILLO_REALTIME {
    writeUntil(UINT32_MAX);
}

void OutputInOrder::writeUntil(std::uint32_t offset) QUILLO_REALTIME {
    while (waiting_.messages > 0 && (heap_[0] >> 32U) <= offset) {
        writeFirst();
    }
}

/// What is written needs no room beside itself.
void OutputInOrder::writeFirst() QUILLO_REALTIME {
    std::pop_heap(heap_.get(), heap_.get() + waiting_.messages, std::greater<>());
    const auto key = heap_[--waiting_.messages];
    const auto bytes = store_[key & UINT32_MAX];
    waiting_.bytes -= roundedUp(bytes.size());
    write(static_cast<std::uint32_t>(key >> 32U), bytes);
    if (waiting_.messages == 0) {
        store_.clear();
    }
}

void OutputInOrder::write(std::uint32_t offset, Bytes bytes) QUILLO_REALTIME {
    host_->write(offset, bytes);
    sounding_.sent(bytes);
}

}  // namespace quillo
