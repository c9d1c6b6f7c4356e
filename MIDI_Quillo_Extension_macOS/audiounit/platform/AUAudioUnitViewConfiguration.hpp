// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace quillo {

/// A size that the host could give the editor's view, in points. 0 × 0 means: whatever the editor likes.
struct AUAudioUnitViewConfiguration {
    double width = 0.0;
    double height = 0.0;

    bool operator==(const AUAudioUnitViewConfiguration&) const = default;
};

}  // namespace quillo
