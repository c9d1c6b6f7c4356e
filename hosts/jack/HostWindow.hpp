// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hosts/jack/SessionSettings.hpp"

namespace quillo {

/// The program's window, as far as `JackHost` has to do with it. [main]
class HostWindow {
public:
    virtual ~HostWindow() = default;
    HostWindow(const HostWindow&) = delete;
    HostWindow& operator=(const HostWindow&) = delete;

    virtual void show(bool isShown) = 0;

    /// What it would like to remember; what it remembers from now on.
    [[nodiscard]] virtual WindowSettings settings() = 0;
    virtual void remember(const WindowSettings& settings) = 0;

    /// What is typed and not confirmed becomes part of the rules.
    virtual void finishTyping() = 0;

protected:
    HostWindow() = default;
};

}  // namespace quillo
