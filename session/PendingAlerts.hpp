// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillo {

/// Alerts for the user, until the editor can show them: one alert after the other, and the same words
/// once, with how often they came. However much there is to tell while no editor is open, it takes little
/// memory. [any but render]
class PendingAlerts {
public:
    /// Alerts with different words; of more, only the number is kept.
    static constexpr std::size_t most = 8;
    /// In bytes; of a longer alert the beginning is kept.
    static constexpr std::size_t longest = 1000;

    /// Never throws: where there is no memory for an alert, there is none for showing it.
    void add(std::string_view text) noexcept;

    /// What the alert says is no longer true. When it was the last that `takeNext` gave, the words in which
    /// it did: shortened, or with a count.
    std::optional<std::string> remove(std::string_view text);

    /// The next alert to show, if any.
    [[nodiscard]] std::optional<std::string> takeNext();

private:
    struct Alert {
        std::string text;
        std::size_t times = 1;
    };

    std::mutex mutex_;
    std::vector<Alert> alerts_;  ///< the oldest first
    std::size_t leftOut_ = 0;
    std::string lastText_;   ///< of the alert taken last, without its count
    std::string lastTaken_;  ///< the same as it was taken
};

}  // namespace quillo
