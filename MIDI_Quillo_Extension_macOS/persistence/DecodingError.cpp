// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/DecodingError.hpp"

namespace quillo {

namespace {

std::string bothTexts(const DecodingError& deciding, std::string_view otherForm, const DecodingError& other) {
    const std::string text = deciding.what();
    if (text == other.what()) {
        return text;
    }
    return text + "; read as " + std::string(otherForm) + ": " + other.what();
}

const DecodingError& further(const DecodingError& deciding, const DecodingError& other) {
    return deciding.valuesRead() > other.valuesRead() ? deciding : other;
}

}  // namespace

DecodingError::DecodingError(const std::string& text, std::size_t valuesRead)
    : std::runtime_error(text), mostUseful_(text), valuesRead_(valuesRead) {}

DecodingError::DecodingError(const DecodingError& deciding, std::string_view otherForm,
                             const DecodingError& other)
    : std::runtime_error(bothTexts(deciding, otherForm, other)),
      mostUseful_(further(deciding, other).mostUseful()),
      valuesRead_(further(deciding, other).valuesRead()) {}

}  // namespace quillo
