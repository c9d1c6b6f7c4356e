// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

#include <lv2/core/lv2.h>
#include <lv2/ui/ui.h>

#include "hosts/adapter/HostedUnit.hpp"

namespace quillo {

/// What a host offers to an editor. What it does not offer is null, or as it is otherwise. [main]
struct LV2UIFeatures {
    /// Reads the host's list, which a null pointer ends.
    explicit LV2UIFeatures(const LV2_Feature* const* features);

    /// The instance's unit; null when the host grants no instance access, or to something else than an instance of
    /// this build.
    HostedUnit* hosted = nullptr;

    std::uintptr_t parent = 0;             ///< the X11 window that the editor is for
    const LV2UI_Resize* resize = nullptr;  ///< how the host learns of the editor's size
    double scale = 1.0;                    ///< pixels a point
};

}  // namespace quillo
