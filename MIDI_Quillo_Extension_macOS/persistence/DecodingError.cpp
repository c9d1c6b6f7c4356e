// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/DecodingError.hpp"

#include <utility>

namespace quillo {

namespace {

std::string joined(std::string_view deciding, std::string_view otherForm, std::string_view other) {
    std::string text(deciding);
    if (deciding != other) {
        text.append("; read as ").append(otherForm).append(": ").append(other);
    }
    return text;
}

}  // namespace

DecodingError::DecodingError(const std::string& text, std::size_t valuesRead)
    : DecodingError(text, {}, text, valuesRead) {}

DecodingError::DecodingError(const std::string& text, std::string path, std::string problem,
                             std::size_t valuesRead)
    : std::runtime_error(text),
      mostUseful_{text, std::move(path), std::move(problem)},
      valuesRead_(valuesRead) {}

DecodingError DecodingError::ofBothReadings(const DecodingError& deciding, std::string_view otherForm,
                                            const DecodingError& other) {
    DecodingError error(joined(deciding.what(), otherForm, other.what()));
    error.mostUseful_ = deciding.valuesRead_ > other.valuesRead_ ? deciding.mostUseful_ : other.mostUseful_;
    return error;
}

}  // namespace quillo
