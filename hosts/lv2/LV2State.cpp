// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/lv2/LV2State.hpp"

#include <exception>
#include <optional>
#include <string>

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

LV2_State_Status save(LV2Instance& instance, LV2_State_Store_Function store, LV2_State_Handle handle) {
    const auto document = instance.session().save();
    return store(handle, instance.ids().stateKey, document.data(), document.size(), instance.ids().atomChunk,
                 LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE);
}

LV2_State_Status save(LV2_Handle handle, LV2_State_Store_Function store, LV2_State_Handle storeHandle,
                      std::uint32_t /*flags*/, const LV2_Feature* const* /*features*/) noexcept try {
    auto* instance = LV2Instance::of(handle);
    if (instance == nullptr || store == nullptr) {
        return LV2_STATE_ERR_UNKNOWN;
    }
    try {
        return save(*instance, store, storeHandle);
    } catch (const std::exception& error) {
        instance->session().tellUser("The rules cannot be saved with the project: " + wordsOf(error));
        return LV2_STATE_ERR_UNKNOWN;
    }
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

constexpr LV2_State_Interface table{.save = &save, .restore = &restore};

}  // namespace

const LV2_State_Interface& lv2State() {
    return table;
}

}  // namespace quillo
