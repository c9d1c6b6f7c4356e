// SPDX-License-Identifier: GPL-3.0-or-later
#include "audiounit/LogCallback.hpp"

#include <utility>

namespace quillo {

LogCallback& LogCallback::operator=(Function function) {
    if (!function) {
        current_.store(nullptr, std::memory_order_release);
        return *this;
    }
    given_.push_back(std::make_unique<const Function>(std::move(function)));
    current_.store(given_.back().get(), std::memory_order_release);
    return *this;
}

}  // namespace quillo
