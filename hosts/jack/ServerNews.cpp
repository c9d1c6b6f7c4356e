// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/ServerNews.hpp"

#include <utility>

namespace quillo {

void ServerNews::serverIsGone() noexcept {
    isGone_ = true;
    wake_.wake();
}

void ServerNews::formatHasChanged() noexcept {
    formatChanged_ = true;
    wake_.wake();
}

void ServerNews::portsHaveChanged() noexcept {
    portsChanged_ = true;
    wake_.wake();
}

void ServerNews::portHasAppeared(std::uint32_t number) {
    {
        const std::lock_guard lock(newPortsMutex_);
        newPorts_.push_back(number);
    }
    portsHaveChanged();
}

ServerNews::Contents ServerNews::take() {
    wake_.clear();
    const std::lock_guard lock(newPortsMutex_);
    return {isGone_.exchange(false), formatChanged_.exchange(false), portsChanged_.exchange(false),
            std::exchange(newPorts_, {})};
}

}  // namespace quillo
