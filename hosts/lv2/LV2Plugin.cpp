// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/lv2/LV2Plugin.hpp"

#include <array>
#include <memory>
#include <string_view>

#include "hosts/lv2/LV2Instance.hpp"
#include "hosts/lv2/LV2State.hpp"

namespace quillo {

namespace {

LV2_URID_Map* mapOf(const LV2_Feature* const* features) {
    for (; features != nullptr && *features != nullptr; ++features) {
        const auto& [name, data] = **features;
        if (name != nullptr && std::string_view(name) == LV2_URID__map) {
            return static_cast<LV2_URID_Map*>(data);
        }
    }
    return nullptr;
}

LV2_Handle instantiate(const LV2_Descriptor* /*descriptor*/, double sampleRate, const char* /*bundle*/,
                       const LV2_Feature* const* features) noexcept try {
    auto* map = mapOf(features);
    if (map == nullptr || map->map == nullptr || !Session::isSampleRate(sampleRate)) {
        return nullptr;
    }
    return std::make_unique<LV2Instance>(sampleRate, *map).release()->handle();
} catch (...) {
    return nullptr;
}

void connectPort(LV2_Handle handle, std::uint32_t port, void* data) QUILLO_REALTIME {
    if (auto* instance = LV2Instance::of(handle)) {
        instance->connect(port, data);
    }
}

void run(LV2_Handle handle, std::uint32_t frames) QUILLO_REALTIME {
    if (auto* instance = LV2Instance::of(handle)) {
        instance->run(frames);
    }
}

/// Neither operation can tell its host of a failure.
template <void (LV2Instance::*Operation)()>
void call(LV2_Handle handle) noexcept try {
    if (auto* instance = LV2Instance::of(handle)) {
        (instance->*Operation)();
    }
} catch (...) {
    return;
}

void cleanup(LV2_Handle handle) noexcept {
    delete LV2Instance::of(handle);
}

const void* extensionData(const char* name) noexcept {
    return name != nullptr && std::string_view(name) == LV2_STATE__interface ? &lv2State() : nullptr;
}

constexpr LV2_Descriptor descriptorFor(const char* uri) {
    return {.URI = uri,
            .instantiate = &instantiate,
            .connect_port = &connectPort,
            .activate = &call<&LV2Instance::activate>,
            .run = &run,
            .deactivate = &call<&LV2Instance::deactivate>,
            .cleanup = &cleanup,
            .extension_data = &extensionData};
}

constexpr std::array descriptors{descriptorFor("urn:midi-quillo:lv2"),
                                 descriptorFor("urn:midi-quillo:lv2-stereo")};

}  // namespace

const LV2_Descriptor* lv2DescriptorOf(std::uint32_t index) noexcept {
    return index < descriptors.size() ? &descriptors[index] : nullptr;
}

}  // namespace quillo
