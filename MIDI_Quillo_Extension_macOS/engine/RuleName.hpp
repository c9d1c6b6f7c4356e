// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>
#include <utility>

#include "engine/SharedBytes.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

/// The name of a rule, as what the rule sends carries it while it waits: the rule may be gone by then.
/// Copying, moving and dropping one neither allocates nor frees.
class RuleName {
public:
    /// The name of an unnamed rule.
    RuleName() = default;

    /// [any but render]
    explicit RuleName(std::string_view text);

    RuleName(const RuleName& other) QUILLO_REALTIME : bytes_(other.bytes_) {
        if (bytes_ != nullptr) {
            bytes_->hold();
        }
    }
    RuleName(RuleName&& other) QUILLO_REALTIME : bytes_(std::exchange(other.bytes_, nullptr)) {}
    RuleName& operator=(RuleName other) QUILLO_REALTIME {
        std::swap(bytes_, other.bytes_);
        return *this;
    }
    ~RuleName() QUILLO_REALTIME {
        if (bytes_ != nullptr) {
            bytes_->release();
        }
    }

    /// Valid as long as this name or a copy of it.
    [[nodiscard]] std::string_view text() const;

private:
    SharedBytes* bytes_ = nullptr;
};

}  // namespace quillo
