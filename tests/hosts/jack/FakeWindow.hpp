// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

#include "hosts/jack/HostWindow.hpp"

namespace quillo::test {

/// Remembers what a window would.
class FakeWindow final : public HostWindow {
public:
    void show(bool isShown) override { memory.isShown = isShown; }
    [[nodiscard]] WindowSettings settings() override { return memory; }
    void remember(const WindowSettings& settings) override {
        memory.place = settings.place;
        memory.presetFolder = settings.presetFolder;
    }
    void finishTyping() override { typed(); }

    WindowSettings memory;
    std::function<void()> typed = [] {};
};

}  // namespace quillo::test
