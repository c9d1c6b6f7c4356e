// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/lv2/LV2Plugin.hpp"

#include <array>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "hosts/lv2/LV2Instance.hpp"
#include "platform/FatalError.hpp"

namespace quillo {

namespace {

/// What a host keeps under the state's key.
struct Kept {
    const void* value = nullptr;
    std::size_t size = 0;
    std::uint32_t type = 0;
    std::uint32_t flags = 0;

    /// The document; nothing when this is of no type that one is kept as.
    [[nodiscard]] std::optional<std::span<const std::uint8_t>> document(const LV2URIDs& ids) const {
        const std::span bytes(static_cast<const std::uint8_t*>(value), size);
        if (type == ids.atomChunk) {
            return bytes;
        }
        if (type == ids.atomString) {
            return !bytes.empty() && bytes.back() == 0 ? bytes.first(size - 1) : bytes;
        }
        return std::nullopt;
    }
};

LV2_State_Status save(LV2_Handle handle, LV2_State_Store_Function store, LV2_State_Handle storeHandle,
                      std::uint32_t /*flags*/, const LV2_Feature* const* /*features*/) noexcept try {
    auto* instance = LV2Instance::of(handle);
    if (instance == nullptr || store == nullptr) {
        return LV2_STATE_ERR_UNKNOWN;
    }
    const auto document = instance->session().trySave();
    if (!document) {
        return LV2_STATE_ERR_UNKNOWN;
    }
    const auto& ids = instance->ids();
    return store(storeHandle, ids.stateKey, document->data(), document->size(), ids.atomChunk,
                 LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE);
} catch (...) {
    return LV2_STATE_ERR_UNKNOWN;
}

LV2_State_Status restore(LV2Instance& instance, const Kept& kept) {
    const auto document = kept.document(instance.ids());
    if (!document) {
        instance.session().tellUser("The saved rules cannot be restored: the host hands them out in "
                                    "another form than they were saved in.");
        return LV2_STATE_ERR_BAD_TYPE;
    }
    return instance.session().restore(*document) ? LV2_STATE_ERR_UNKNOWN : LV2_STATE_SUCCESS;
}

LV2_State_Status restore(LV2_Handle handle, LV2_State_Retrieve_Function retrieve,
                         LV2_State_Handle retrieveHandle, std::uint32_t /*flags*/,
                         const LV2_Feature* const* /*features*/) noexcept try {
    auto* instance = LV2Instance::of(handle);
    if (instance == nullptr || retrieve == nullptr) {
        return LV2_STATE_ERR_UNKNOWN;
    }
    Kept kept;
    kept.value = retrieve(retrieveHandle, instance->ids().stateKey, &kept.size, &kept.type, &kept.flags);
    return kept.value == nullptr ? LV2_STATE_ERR_NO_PROPERTY : restore(*instance, kept);
} catch (...) {
    return LV2_STATE_ERR_UNKNOWN;
}

constexpr LV2_State_Interface stateInterface{.save = &save, .restore = &restore};

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

/// Neither operation can report a failure to its host.
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
    return name != nullptr && std::string_view(name) == LV2_STATE__interface ? &stateInterface : nullptr;
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
