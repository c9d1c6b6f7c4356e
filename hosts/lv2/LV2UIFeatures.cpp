// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/lv2/LV2UIFeatures.hpp"

#include <bit>
#include <string_view>

#include <lv2/atom/atom.h>
#include <lv2/instance-access/instance-access.h>
#include <lv2/options/options.h>
#include <lv2/urid/urid.h>

namespace quillo {

namespace {

/// The data of the feature of that name; null when the host does not offer it.
template <class Data>
Data* find(const LV2_Feature* const* features, std::string_view name) {
    for (const auto* const* feature = features; feature != nullptr && *feature != nullptr; ++feature) {
        const auto& [offered, data] = **feature;
        if (offered != nullptr && offered == name) {
            return static_cast<Data*>(data);
        }
    }
    return nullptr;
}

/// How many pixels a point shall have, by the host's options; 1 when they do not say, or say nonsense.
double scaleOf(const LV2_Options_Option* option, const LV2_URID_Map* map) {
    constexpr float greatest = 16.0F;
    if (map == nullptr || map->map == nullptr) {
        return 1.0;
    }
    const auto key = map->map(map->handle, LV2_UI__scaleFactor);
    const auto real = map->map(map->handle, LV2_ATOM__Float);
    for (; option != nullptr && option->key != 0; ++option) {
        if (option->key == key && option->type == real && option->size == sizeof(float)) {
            const auto scale = *static_cast<const float*>(option->value);
            return scale > 0.0F && scale <= greatest ? scale : 1.0;
        }
    }
    return 1.0;
}

}  // namespace

LV2UIFeatures::LV2UIFeatures(const LV2_Feature* const* features)
    : instance(LV2InstanceAccess::of(find<const void>(features, LV2_INSTANCE_ACCESS_URI))),
      parent(std::bit_cast<std::uintptr_t>(find<void>(features, LV2_UI__parent))),
      resize(find<const LV2UI_Resize>(features, LV2_UI__resize)),
      scale(scaleOf(find<const LV2_Options_Option>(features, LV2_OPTIONS__options),
                    find<const LV2_URID_Map>(features, LV2_URID__map))) {}

}  // namespace quillo
