// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>

#include <lv2/core/lv2.h>
#include <lv2/ui/ui.h>

#include "hosts/lv2/LV2InstanceAccess.hpp"
#include "session/EditorUnit.hpp"
#include "window/EmbeddedEditor.hpp"

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

/// An editor in an LV2 host's window. Where it cannot reach the plug-in, because the host does not grant that
/// or because the plug-in is of another version, it shows why, and what to do about it, in the place of the
/// rules; nothing can be edited then. [main]
class LV2UIInstance {
public:
    /// Throws a `FatalError` when no editor can be shown here, or the host gives no window for it.
    explicit LV2UIInstance(const LV2UIFeatures& features);

    /// What the editor shows and edits.
    [[nodiscard]] EditorUnit& unit() { return unit_; }
    [[nodiscard]] EmbeddedEditor& editor() { return editor_; }

private:
    EditorUnit& unitFor(const LV2UIFeatures& features);

    std::shared_ptr<EditorUnit> outOfReach_;  ///< stands in for a unit that cannot be reached
    EditorUnit& unit_;
    EmbeddedEditor editor_;
};

}  // namespace quillo
