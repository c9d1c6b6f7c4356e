// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

#include <lv2/core/lv2.h>
#include <lv2/ui/ui.h>

#include "hosts/lv2/LV2InstanceAccess.hpp"

namespace quillo {

/// What a host offers to an editor. What it does not offer is null, or as it is otherwise. [main]
struct LV2UIFeatures {
    /// Reads the host's list, which a null pointer ends.
    explicit LV2UIFeatures(const LV2_Feature* const* features);

    /// The instance, which may be of another version; null when the host grants no instance access, or to
    /// something else than an instance of ours.
    const LV2InstanceAccess* instance = nullptr;

    std::uintptr_t parent = 0;             ///< the X11 window that the editor is for
    const LV2UI_Resize* resize = nullptr;  ///< how the host learns of the editor's size
    double scale = 1.0;                    ///< pixels a point
};

}  // namespace quillo
