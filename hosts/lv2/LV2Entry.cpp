// SPDX-License-Identifier: GPL-3.0-or-later
// What a host finds in the binary.
#include "hosts/lv2/LV2Plugin.hpp"

const LV2_Descriptor* lv2_descriptor(std::uint32_t index) {
    return quillo::lv2DescriptorOf(index);
}
