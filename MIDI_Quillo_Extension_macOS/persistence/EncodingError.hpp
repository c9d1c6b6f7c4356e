// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <stdexcept>

namespace quillo {

/// A value that has no document: a name that is not valid UTF-8.
class EncodingError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace quillo
