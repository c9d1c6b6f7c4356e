// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

#include "hosts/lv2/LV2Headers.hpp"

namespace quillo {

/// What a host has of the plug-in and of its stereo variant, by number; null behind the last. No exception
/// leaves a function of the tables, and a null handle does nothing.
///
/// `instantiate` answers null when the host offers no `urid:map` or has no number for a name, its sample rate is
/// none, or there is no memory.
[[nodiscard]] const LV2_Descriptor* lv2DescriptorOf(std::uint32_t index) noexcept;

}  // namespace quillo
