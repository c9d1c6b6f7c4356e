// SPDX-License-Identifier: GPL-3.0-or-later
// What a host finds in the editor's binary.
#include "hosts/lv2/LV2UI.hpp"

const LV2UI_Descriptor* lv2ui_descriptor(std::uint32_t index) {
    return quillo::lv2UIDescriptorOf(index);
}
