// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <functional>
#include <iosfwd>
#include <string>

namespace quillo {

/// A line on the terminal that says how far long work has come. It appears only when the work takes longer
/// than a second, changes at most five times a second, and is gone afterwards.
class ProgressLine {
public:
    using Clock = std::chrono::steady_clock;
    using Now = std::function<Clock::time_point()>;

    /// Counts the second from here. Without a terminal nothing is ever written.
    ProgressLine(std::ostream& out, bool isTerminal, std::string what, Now now = &Clock::now);
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /// `done` is the part that is done, from 0 to 1.
    void update(double done);

private:
    std::ostream& out_;
    bool isTerminal_;
    std::string what_;
    Now now_;
    Clock::time_point nextUpdate_;
    bool isShown_ = false;
};

}  // namespace quillo
