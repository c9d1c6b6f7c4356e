// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

#include "audiounit/AudioUnitViewController.hpp"
#include "hosts/auv3/UnitBridge.hpp"
#include "platform/MainQueue.hpp"

namespace quillo {

/// All that the platform's view controller does for which no type of the platform is needed: it owns the
/// controller and the editor. Nothing throws, save for making one, for which memory may be missing.
class EditorBridge {
public:
    /// [any]
    EditorBridge();
    /// [any] What belongs to the main thread goes there.
    ~EditorBridge();
    EditorBridge(const EditorBridge&) = delete;
    EditorBridge& operator=(const EditorBridge&) = delete;

    /// [any] The factory has made this unit: the editor is for it, and shows what goes wrong with it.
    void adopt(UnitBridge& unit) noexcept;

    /// [main] `view` is the platform's view, which outlives the bridge.
    void viewDidLoad(void* view) noexcept;
    /// [main] The view has got this size, in points.
    void viewDidLayout(double width, double height) noexcept;

    [[nodiscard]] AudioUnitViewController& controller() noexcept;

private:
    struct Window;

    MainQueue& mainQueue_;
    std::shared_ptr<Window> window_;
};

}  // namespace quillo
