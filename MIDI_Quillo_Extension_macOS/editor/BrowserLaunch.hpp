// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "platform/Descriptor.hpp"

namespace quillo {

/// Opens a page in the user's browser, by what the desktop has for that: xdg-open, or x-www-browser. The
/// browser is no child of this process, which may be a host: nothing of it is left to be waited for, and it
/// outlives the editor. On Linux only.
///
/// How it went is known later, as an opener may wait for its browser:
///
///     BrowserLaunch launch("file:///usr/share/doc/midi-quillo/guide/index.html");
///     ... launch.state() == BrowserLaunch::State::failed ...
class BrowserLaunch {
public:
    explicit BrowserLaunch(const std::string& address);

    enum class State { opening, opened, failed };

    /// Where it stands by now; never waits.
    [[nodiscard]] State state();

private:
    State state_ = State::opening;
    Descriptor answer_;  ///< the openers' exit status, as text
};

}  // namespace quillo
