// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>

namespace quillo {

/// What says how many pixels of the screen a point of a program's window takes.
struct ScaleSettings {
    std::optional<double> asked;  ///< by the user of this program
    std::string gdkScale;         ///< the environment's GDK_SCALE
    std::string resources;        ///< the X server's resources, a line each, where Xft.dpi is
    double screenDPI = 0;         ///< of the screen as the X server knows it, 0 where it does not
};

/// The first that there is of: what was asked, GDK_SCALE, Xft.dpi in steps of a quarter, the screen's own
/// resolution in steps of a half, as a common screen is a little finer than 96 dpi; 1 without any. What is
/// not asked for is from 1 to 4.
[[nodiscard]] double windowScale(const ScaleSettings& settings);

/// Draws all windows of this program at the scale that its display wants, or at that which was asked. To be
/// called once there is a display and before there is a window. [main]
void useWindowScale(std::optional<double> asked);

}  // namespace quillo
