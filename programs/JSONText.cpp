// SPDX-License-Identifier: GPL-3.0-or-later
#include "programs/JSONText.hpp"

#include "platform/QuotedText.hpp"

namespace quillo {

std::string jsonText(const JSONAnswer& answer) {
    return escaped(answer.dump(-1, ' ', false, JSONAnswer::error_handler_t::replace)) + '\n';
}

JSONAnswer jsonOfRule(std::size_t position, const std::string& name) {
    return {{"number", position + 1}, {"name", name}};
}

}  // namespace quillo
