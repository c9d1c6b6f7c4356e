// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

#include <lv2/ui/ui.h>

namespace quillo {

/// What a host has of the editor, by number; null behind the last. No exception leaves a function of the
/// table.
///
/// `instantiate` answers null, and says why on the standard error output, when the host gives no window, or
/// when there is no display or no typeface.
[[nodiscard]] const LV2UI_Descriptor* lv2UIDescriptorOf(std::uint32_t index) noexcept;

}  // namespace quillo
