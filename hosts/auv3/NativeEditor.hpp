// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

#include "audiounit/AudioUnitViewController.hpp"

namespace quillo {

/// The editor in a view of the platform. [main] only.
class NativeEditor {
public:
    virtual ~NativeEditor() = default;

    /// In points.
    virtual void setSize(int width, int height) = 0;
};

/// [main] Puts the editor over the controller's model into `parentView`, a view of the platform. The
/// controller and the view must outlive it. While it lives, the process's main queue is drained.
[[nodiscard]] std::unique_ptr<NativeEditor> makeNativeEditor(AudioUnitViewController& controller,
                                                             void* parentView);

}  // namespace quillo
