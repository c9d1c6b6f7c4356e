// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/PendingAlerts.hpp"

#include <algorithm>
#include <utility>

namespace quillo {

namespace {

/// The text, or so much of its beginning that no character is cut.
std::string_view shortened(std::string_view text) {
    auto size = std::min(text.size(), PendingAlerts::longest);
    while (size < text.size() && size > 0 && (static_cast<unsigned char>(text[size]) & 0xC0U) == 0x80U) {
        --size;
    }
    return text.substr(0, size);
}

}  // namespace

void PendingAlerts::add(std::string_view text) noexcept try {
    const std::lock_guard lock(mutex_);
    const auto kept = shortened(text);
    if (const auto same = std::ranges::find(alerts_, kept, &Alert::text); same != alerts_.end()) {
        ++same->times;
    } else if (alerts_.size() < most) {
        alerts_.push_back({std::string(kept)});
    } else {
        ++leftOut_;
    }
} catch (...) {
    return;  // without memory for the words nothing can be told
}

std::optional<std::string> PendingAlerts::remove(std::string_view text) {
    const std::lock_guard lock(mutex_);
    const auto kept = shortened(text);
    std::erase_if(alerts_, [kept](const Alert& alert) { return alert.text == kept; });
    return lastText_ == kept ? std::optional(lastTaken_) : std::nullopt;
}

std::optional<std::string> PendingAlerts::takeNext() {
    const std::lock_guard lock(mutex_);
    if (!alerts_.empty()) {
        auto [text, times] = std::move(alerts_.front());
        alerts_.erase(alerts_.begin());
        lastText_ = std::move(text);
        lastTaken_ = times == 1 ? lastText_ : lastText_ + "\n\n(" + std::to_string(times) + " times)";
        return lastTaken_;
    }
    if (leftOut_ > 0) {
        const auto count = std::exchange(leftOut_, 0);
        return count == 1 ? "There was 1 more alert."
                          : "There were " + std::to_string(count) + " more alerts.";
    }
    return std::nullopt;
}

}  // namespace quillo
