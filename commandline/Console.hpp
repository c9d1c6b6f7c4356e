// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <iosfwd>

namespace quillo {

/// The streams that a run of the program reads and writes. They outlive the run.
struct Console {
    std::istream& in;
    std::ostream& out;
    std::ostream& err;
    bool errIsTerminal = false;  ///< whether `err` is a terminal, for progress
    int outDescriptor = -1;      ///< that `out` writes to, if it is one
};

}  // namespace quillo
