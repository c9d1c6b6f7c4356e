// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/lv2/LV2World.hpp"

#include <stdexcept>

namespace quillo::test {

LV2World::LV2World() : world_(::lilv_world_new()) {
    const Node bundle(::lilv_new_file_uri(get(), nullptr, QUILLO_LV2_BUNDLE "/"));
    ::lilv_world_load_bundle(get(), bundle.get());
}

const LilvPlugin* LV2World::plugin(const char* name) const {
    const auto node = uri(name);
    const auto* plugin = ::lilv_plugins_get_by_uri(::lilv_world_get_all_plugins(get()), node.get());
    if (plugin == nullptr) {
        throw std::runtime_error(std::string("the bundle has no plug-in ") + name);
    }
    return plugin;
}

}  // namespace quillo::test
