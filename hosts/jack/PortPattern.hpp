// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <regex.h>

#include <memory>
#include <string>

#include "hosts/jack/PortDescription.hpp"

namespace quillo {

/// A POSIX extended regular expression for the names of ports, as the server's own tools take them.
class PortPattern {
public:
    /// Throws `std::invalid_argument` with the reason for a text that is no regular expression.
    explicit PortPattern(const std::string& text);

    /// Whether it matches anywhere in the port's full name or in one of its aliases.
    [[nodiscard]] bool matches(const PortDescription& port) const;

private:
    struct Free {
        void operator()(regex_t* expression) const;
    };

    [[nodiscard]] bool matches(const std::string& name) const;

    std::unique_ptr<regex_t, Free> expression_;
};

}  // namespace quillo
