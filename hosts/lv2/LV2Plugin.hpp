// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

#include "hosts/lv2/LV2Headers.hpp"

namespace quillo {

/// What a host has of the plug-in and of its stereo variant, by number; null behind the last. No exception
/// leaves a function of the tables, and a null handle does nothing.
///
/// `instantiate` answers null when the host offers no `urid:map` or has no number for a name, its sample rate
/// is invalid, or there is no memory.
///
/// The state is one property, the state document: byte for byte what a preset file holds. It is an
/// `atom:Chunk`, which projects keep as base64: of the strings that a document may hold, some do not survive
/// in them. Projects saved before hold an `atom:String`, which is restored too; the zero byte that ends it is
/// no part of the document. What cannot be read leaves the rules as they are, and the editor shows why.
/// A host that has no such property has nothing to restore: it is answered `LV2_STATE_ERR_NO_PROPERTY`, and
/// no alert is shown. Rules may be restored while the audio thread runs, from any thread.
[[nodiscard]] const LV2_Descriptor* lv2DescriptorOf(std::uint32_t index) noexcept;

}  // namespace quillo
