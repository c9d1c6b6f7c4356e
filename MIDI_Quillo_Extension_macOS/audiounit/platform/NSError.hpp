// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "platform/OSStatus.hpp"

namespace quillo {

/// The domain of errors whose code is an `OSStatus`.
inline constexpr const char* NSOSStatusErrorDomain = "NSOSStatusErrorDomain";

/// A failure that an operation hands back to the host.
struct NSError {
    std::string domain;
    OSStatus code = noErr;

    bool operator==(const NSError&) const = default;
};

}  // namespace quillo
