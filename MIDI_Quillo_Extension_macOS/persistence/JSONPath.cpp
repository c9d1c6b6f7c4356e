// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/JSONPath.hpp"

namespace quillo {

std::string JSONPath::text() const {
    if (parent_ == nullptr) {
        return {};
    }
    const auto around = parent_->text();
    if (index_) {
        return around + "[" + std::to_string(*index_) + "]";
    }
    return around + (around.empty() ? "" : ".") + std::string(key_);
}

}  // namespace quillo
