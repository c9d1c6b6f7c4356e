// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <utility>

#include "hosts/auv3/Failure.hpp"

namespace quillo::test {

/// A failure with a status of the platform's.
inline Failure failed(OSStatus code, std::string text = "") {
    Failure failure;
    failure.error.domain = "NSOSStatusErrorDomain";
    failure.error.code = code;
    failure.text = std::move(text);
    return failure;
}

}  // namespace quillo::test
