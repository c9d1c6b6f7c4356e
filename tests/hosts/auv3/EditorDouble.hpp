// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <stdexcept>

#include "hosts/auv3/NativeEditor.hpp"

namespace quillo::test {

/// What is known of the editor that `makeNativeEditor` has made last, also when it is gone. A program
/// that includes this has that editor in the place of the real one.
struct EditorDouble {
    bool fails = false;  ///< whether no editor can be made
    bool open = false;
    bool diedOnMainThread = false;
    void* parentView = nullptr;
    int width = 0;
    int height = 0;
    AudioUnitViewController* controller = nullptr;
};

[[nodiscard]] EditorDouble& editorDouble();

}  // namespace quillo::test
