// SPDX-License-Identifier: GPL-3.0-or-later
// What a host finds in the binary: the entry, and behind it the factory of the one plug-in.
#include <string_view>

#include "hosts/clap/CLAPHeaders.hpp"
#include "hosts/clap/CLAPPlugin.hpp"

namespace quillo {

namespace {

std::uint32_t count(const clap_plugin_factory_t* /*factory*/) noexcept {
    return 1;
}

const clap_plugin_descriptor_t* describe(const clap_plugin_factory_t* /*factory*/,
                                         std::uint32_t index) noexcept {
    return index == 0 ? &clapDescriptor() : nullptr;
}

const clap_plugin_t* create(const clap_plugin_factory_t* /*factory*/, const clap_host_t* host,
                            const char* id) noexcept {
    return id != nullptr && std::string_view(id) == clapDescriptor().id ? CLAPPlugin::create(host) : nullptr;
}

constexpr clap_plugin_factory_t factory{
    .get_plugin_count = &count, .get_plugin_descriptor = &describe, .create_plugin = &create};

bool init(const char* /*path*/) noexcept {
    return true;
}

void deinit() noexcept {}

const void* getFactory(const char* id) noexcept {
    return id != nullptr && std::string_view(id) == CLAP_PLUGIN_FACTORY_ID ? &factory : nullptr;
}

}  // namespace

}  // namespace quillo

extern "C" {

const clap_plugin_entry_t clap_entry{.clap_version = CLAP_VERSION,
                                     .init = &quillo::init,
                                     .deinit = &quillo::deinit,
                                     .get_factory = &quillo::getFactory};
}
