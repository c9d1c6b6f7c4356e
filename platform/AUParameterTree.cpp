// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/AUParameterTree.hpp"

#include <utility>

namespace quillo {

AUParameterTree::AUParameterTree(std::vector<AUParameter> parameters) : parameters_(std::move(parameters)) {}

std::shared_ptr<AUParameterTree> AUParameterTree::createTree(std::vector<AUParameter> children) {
    return std::shared_ptr<AUParameterTree>(new AUParameterTree(std::move(children)));
}

}  // namespace quillo
