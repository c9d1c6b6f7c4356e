// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/PortPattern.hpp"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace quillo {

void PortPattern::Free::operator()(regex_t* expression) const {
    ::regfree(expression);
    delete expression;
}

PortPattern::PortPattern(const std::string& text) {
    auto expression = std::make_unique<regex_t>();
    const int error = ::regcomp(expression.get(), text.c_str(), REG_EXTENDED | REG_NOSUB);
    if (error != 0) {
        std::array<char, 128> reason{};
        ::regerror(error, expression.get(), reason.data(), reason.size());
        throw std::invalid_argument(reason.data());
    }
    expression_.reset(expression.release());
}

bool PortPattern::matches(const std::string& name) const {
    return ::regexec(expression_.get(), name.c_str(), 0, nullptr, 0) == 0;
}

bool PortPattern::matches(const PortDescription& port) const {
    return matches(port.name) ||
           std::ranges::any_of(port.aliases, [this](const std::string& alias) { return matches(alias); });
}

}  // namespace quillo
