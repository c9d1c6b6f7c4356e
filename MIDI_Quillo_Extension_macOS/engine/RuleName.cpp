// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/RuleName.hpp"

#include <span>

namespace quillo {

RuleName::RuleName(std::string_view text) {
    if (!text.empty()) {
        bytes_ = SharedBytes::make({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
    }
}

std::string_view RuleName::text() const {
    if (bytes_ == nullptr) {
        return {};
    }
    const auto bytes = bytes_->bytes();
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace quillo
