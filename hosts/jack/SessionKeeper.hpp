// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>

#include "hosts/jack/SessionFiles.hpp"
#include "platform/Data.hpp"

namespace quillo {

/// Saves a session's rules soon after each change. What is saved within `versionSpan` from the beginning of a
/// version belongs to it, so that the ten versions reach further back than ten turns of a wheel; the first
/// change of a run always begins a new one. Time is the caller's. [main]
class SessionKeeper {
public:
    using Time = std::chrono::steady_clock::time_point;

    static constexpr std::chrono::milliseconds restBeforeSaving{500};
    static constexpr std::chrono::seconds longestUnsaved{2};
    static constexpr std::chrono::minutes versionSpan{1};

    /// `read` gives the rules as they are.
    SessionKeeper(SessionFiles files, std::function<Data()> read);

    /// The rules have changed.
    void changed(Time now);

    /// To be called often: saves when the last change is `restBeforeSaving` old, or the first
    /// `longestUnsaved`. Says why it could not be done; it is tried again after the next change.
    [[nodiscard]] std::optional<std::string> keepUp(Time now);

    /// Saves now what is not saved, unless that has failed and nothing has changed since.
    [[nodiscard]] std::optional<std::string> keepBeforehand(Time now);

    /// Saves now what is not saved.
    [[nodiscard]] std::optional<std::string> keepNow(Time now);

    /// Whether the last attempt to save has failed, and nothing was changed or saved since.
    [[nodiscard]] bool hasFailed() const { return failed_; }

private:
    void save(Time now);

    SessionFiles files_;
    std::function<Data()> read_;
    std::optional<Time> versionBegan_;  ///< when the newest version was begun, if in this run
    std::optional<Time> firstUnsaved_;
    Time lastChange_;
    bool failed_ = false;
};

}  // namespace quillo
