// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <vector>

namespace quillo {

/// Where rows of individual heights lie under one another. Finding a row takes logarithmic time.
class RowGeometry {
public:
    RowGeometry() = default;
    /// The first row begins at `top`; `gap` is between two rows, and none after the last.
    RowGeometry(const std::vector<int>& heights, int top, int gap);

    [[nodiscard]] std::size_t count() const { return bottoms_.size(); }
    [[nodiscard]] int top(std::size_t row) const { return tops_[row]; }
    [[nodiscard]] int bottom(std::size_t row) const { return bottoms_[row]; }
    /// The end of the last row; where the first would begin, without any.
    [[nodiscard]] int bottom() const { return bottoms_.empty() ? top_ : bottoms_.back(); }

    /// The first row that ends below `y`; `count()` when none does.
    [[nodiscard]] std::size_t firstBelow(int y) const;

    /// The gap where something let go at `y` goes: in front of that row, or `count()` for the end.
    [[nodiscard]] std::size_t gapAt(int y) const;

    /// The middle of a gap, `count()` included.
    [[nodiscard]] int gapCentre(std::size_t gap) const;

private:
    int top_ = 0;
    int gap_ = 0;
    std::vector<int> tops_;
    std::vector<int> bottoms_;
};

}  // namespace quillo
