// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

#include "session/EditorUnit.hpp"

namespace quillo {

/// What an instance's handle points to: the one thing that the binary with the editor has of the binary that
/// renders. A host hands the handle on (the feature `instance-access`). It may be another plug-in's, or that
/// of another version of this one, whose binary was loaded before the package was upgraded; so both numbers
/// are compared before anything else is touched. The magic number and the place of `number` never change.
struct LV2InstanceAccess {
    static constexpr std::uint64_t expectedMagic = 0x4F4C4C4955514D31;

    /// Made by the build of the headers that say how the unit's interface, and what passes through it, lie in
    /// memory.
    static constexpr std::uint64_t expectedNumber = QUILLO_EDITOR_UNIT_NUMBER;

    std::uint64_t magic = expectedMagic;
    std::uint64_t number = expectedNumber;
    EditorUnit* unit = nullptr;  ///< as long as the instance lives

    /// The instance behind a handle, of this version or of another; null when the handle is, or is no
    /// instance of ours. [any]
    [[nodiscard]] static const LV2InstanceAccess* of(const void* handle) noexcept {
        const auto* access = static_cast<const LV2InstanceAccess*>(handle);
        return access != nullptr && access->magic == expectedMagic ? access : nullptr;
    }

    [[nodiscard]] bool isOfThisVersion() const noexcept { return number == expectedNumber; }
};

}  // namespace quillo
