// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FatalError.hpp"

#include <string_view>

namespace quillo {

namespace {

std::string describe(const std::string& message, const std::source_location& where) {
    const std::string_view path = where.file_name();
    const std::string file(path.substr(path.find_last_of('/') + 1));
    return "Fatal error: " + message + " (" + file + ":" + std::to_string(where.line()) + ")";
}

}  // namespace

FatalError::FatalError(const std::string& message, const std::source_location& where)
    : std::runtime_error(describe(message, where)) {}

void fatalError(const std::string& message, const std::source_location& where) {
    throw FatalError(message, where);
}

}  // namespace quillo
