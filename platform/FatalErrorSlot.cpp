// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FatalErrorSlot.hpp"

namespace quillo {

OSStatus FatalErrorSlot::set(const char* message, std::source_location where) QUILLO_REALTIME {
    if (!isSet()) {
        message_ = message;
        where_ = where;
        set_.store(true, std::memory_order_release);
    }
    return kQuilloErr_FatalError;
}

bool FatalErrorSlot::isSet() const QUILLO_REALTIME {
    return set_.load(std::memory_order_acquire);
}

std::optional<FatalError> FatalErrorSlot::error() const {
    if (!isSet()) {
        return std::nullopt;
    }
    return FatalError(message_, where_);
}

void FatalErrorSlot::raise() {
    if (!isSet()) {
        return;
    }
    const char* message = message_;
    const auto where = where_;
    set_.store(false, std::memory_order_release);
    fatalError(message, where);
}

}  // namespace quillo
