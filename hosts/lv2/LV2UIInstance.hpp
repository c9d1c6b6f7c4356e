// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

#include "hosts/lv2/LV2UIFeatures.hpp"
#include "hosts/lv2/UnitOutOfReach.hpp"
#include "session/EditorUnit.hpp"
#include "window/EmbeddedEditor.hpp"

namespace quillo {

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

    std::optional<UnitOutOfReach> outOfReach_;
    EditorUnit& unit_;
    EmbeddedEditor editor_;
};

}  // namespace quillo
