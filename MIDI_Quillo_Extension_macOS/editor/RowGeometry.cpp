// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/RowGeometry.hpp"

#include <algorithm>

namespace quillo {

RowGeometry::RowGeometry(const std::vector<int>& heights, int top, int gap) : top_(top), gap_(gap) {
    tops_.reserve(heights.size());
    bottoms_.reserve(heights.size());
    for (const auto height : heights) {
        tops_.push_back(top);
        bottoms_.push_back(top + height);
        top += height + gap;
    }
}

std::size_t RowGeometry::firstBelow(int y) const {
    return static_cast<std::size_t>(std::upper_bound(bottoms_.begin(), bottoms_.end(), y) - bottoms_.begin());
}

std::size_t RowGeometry::gapAt(int y) const {
    const auto row = firstBelow(y);
    return row < count() && y > (top(row) + bottom(row)) / 2 ? row + 1 : row;
}

int RowGeometry::gapCentre(std::size_t gap) const {
    return (gap < count() ? top(gap) - gap_ : bottom()) + gap_ / 2;
}

}  // namespace quillo
