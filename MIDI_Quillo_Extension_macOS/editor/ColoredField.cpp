// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/ColoredField.hpp"

#include <utility>

namespace quillo {

ColoredField::ColoredField(std::unique_ptr<FieldView> field, const ColorPair& colors)
    : field_(std::move(field)) {
    set<MyPrimaryColor>(colors.primary);
    set<MySecondaryColor>(colors.secondary);
    addAndMakeVisible(*field_);
}

void ColoredField::resized() {
    field_->setBounds(getLocalBounds());
}

}  // namespace quillo
