// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>

namespace quillo {

/// What a panic has ended.
struct PanicResult {
    std::size_t notes = 0;
    std::size_t pedals = 0;
    std::size_t messages = 0;  ///< that waited

    bool operator==(const PanicResult&) const = default;
};

/// The same for the user, such as "Stopped 3 notes, let go of 1 pedal, cancelled 12 waiting messages",
/// without the parts that there were none of; "Nothing was sounding" when there was nothing.
[[nodiscard]] std::string inWords(const PanicResult& result);

}  // namespace quillo
