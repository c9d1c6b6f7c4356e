// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace quillo {

/// A view that knows how much room it would like, in points; what lays it out may give it less.
class PreferredSize {
public:
    virtual ~PreferredSize() = default;

    [[nodiscard]] virtual int preferredWidth() const = 0;
    [[nodiscard]] virtual int preferredHeight() const = 0;
};

}  // namespace quillo
