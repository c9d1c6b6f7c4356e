// SPDX-License-Identifier: GPL-3.0-or-later
#include "audiounit/platform/AUParameterTree.hpp"

#include <utility>

namespace quillo {

AUParameterTree::AUParameterTree(std::vector<AUParameter> parameters) : parameters_(std::move(parameters)) {}

std::shared_ptr<AUParameterTree> AUParameterTree::createTree(std::vector<AUParameter> children) {
    return std::shared_ptr<AUParameterTree>(new AUParameterTree(std::move(children)));
}

AUParameterObserverToken AUParameterTree::tokenByAddingParameterObserver(
    std::function<void(AUParameterAddress)> callback) {
    auto token = std::make_shared<const std::function<void(AUParameterAddress)>>(std::move(callback));
    observers_.emplace_back(token);
    return token;
}

void AUParameterTree::parameterChanged(AUParameterAddress address) {
    const auto observers = observers_;
    for (const auto& weak : observers) {
        if (const auto observer = weak.lock()) {
            (*observer)(address);
        }
    }
}

}  // namespace quillo
