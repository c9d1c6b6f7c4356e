// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

namespace quillo {

using AUParameterAddress = std::uint64_t;

/// One automatable parameter of a unit.
struct AUParameter {
    AUParameterAddress address = 0;
};

/// The parameters of a unit. Immutable.
class AUParameterTree {
public:
    [[nodiscard]] static std::shared_ptr<AUParameterTree> createTree(std::vector<AUParameter> children);

    [[nodiscard]] const std::vector<AUParameter>& allParameters() const { return parameters_; }

private:
    explicit AUParameterTree(std::vector<AUParameter> parameters);

    std::vector<AUParameter> parameters_;
};

}  // namespace quillo
