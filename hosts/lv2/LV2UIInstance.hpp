// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

#include "hosts/adapter/EmbeddedEditor.hpp"
#include "hosts/adapter/HostedUnit.hpp"
#include "hosts/lv2/LV2UIFeatures.hpp"

namespace quillo {

/// An editor in an LV2 host's window. Where the host does not let it reach the plug-in, it shows why, and what to do
/// about it, in the place of the rules; nothing can be edited then. [main]
class LV2UIInstance {
public:
    /// Throws a `FatalError` when no editor can be shown here, or the host gives no window for it.
    explicit LV2UIInstance(const LV2UIFeatures& features);

    [[nodiscard]] EmbeddedEditor& editor() { return editor_; }

private:
    HostedUnit& unitFor(const LV2UIFeatures& features);
    HostedUnit& strandedUnit();

    std::optional<HostedUnit> stranded_;  ///< in the place of a plug-in that is out of reach
    EmbeddedEditor editor_;
};

}  // namespace quillo
