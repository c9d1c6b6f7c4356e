// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace quillo {

using AUParameterAddress = std::uint64_t;

/// One automatable parameter of a unit.
struct AUParameter {
    AUParameterAddress address = 0;
};

/// Keeps an observation of a tree's parameters alive; dropping it ends the observation.
using AUParameterObserverToken = std::shared_ptr<const std::function<void(AUParameterAddress)>>;

/// The parameters of a unit, which are fixed, and those who observe their values. [main]
class AUParameterTree {
public:
    [[nodiscard]] static std::shared_ptr<AUParameterTree> createTree(std::vector<AUParameter> children);

    [[nodiscard]] const std::vector<AUParameter>& allParameters() const { return parameters_; }

    /// `callback` gets the address of each parameter whose value changes, for as long as the token lives.
    [[nodiscard]] AUParameterObserverToken tokenByAddingParameterObserver(
        std::function<void(AUParameterAddress)> callback);

    /// The value of the parameter at this address has changed: notifies the observers.
    void parameterChanged(AUParameterAddress address);

private:
    explicit AUParameterTree(std::vector<AUParameter> parameters);

    std::vector<AUParameter> parameters_;
    std::vector<std::weak_ptr<const std::function<void(AUParameterAddress)>>> observers_;
};

}  // namespace quillo
