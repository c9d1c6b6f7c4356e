// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

#include "hosts/adapter/HostedUnit.hpp"

namespace quillo {

/// What an instance's handle points to: the one thing that the binary with the editor has of the binary that
/// renders. A host hands the handle on (the feature `instance-access`). It may be another plug-in's, or of
/// another version of this one; so it is asked for the unit, and not taken for granted.
///
/// Both binaries must be of one build: the unit is a C++ object. `layout` changes whenever this struct, or
/// what the editor does with the unit, does; the size of the unit catches what was forgotten.
struct LV2InstanceAccess {
    static constexpr std::uint64_t expectedMagic = 0x4F4C4C4955514D31;
    static constexpr std::uint32_t expectedLayout = 1;

    std::uint64_t magic = expectedMagic;
    std::uint32_t layout = expectedLayout;
    std::uint32_t unitSize = sizeof(HostedUnit);
    HostedUnit* hosted = nullptr;  ///< as long as the instance lives

    /// The unit behind a handle; null when the handle is, or is none of this build. [any]
    [[nodiscard]] static HostedUnit* hostedOf(const void* handle) noexcept {
        const auto* access = static_cast<const LV2InstanceAccess*>(handle);
        const bool ours = access != nullptr && access->magic == expectedMagic &&
                          access->layout == expectedLayout && access->unitSize == sizeof(HostedUnit);
        return ours ? access->hosted : nullptr;
    }
};

}  // namespace quillo
