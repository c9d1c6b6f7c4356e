// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/JSONWriter.hpp"

#include <nlohmann/json.hpp>

#include "persistence/DecodingError.hpp"

namespace quillo {

namespace {

/// A JSON string with its quotation marks, in the library's escapes.
std::string quoted(std::string_view string) {
    try {
        return nlohmann::json(string).dump();
    } catch (const nlohmann::json::type_error&) {
        throw EncodingError("a string is not valid UTF-8");
    }
}

}  // namespace

void JSONWriter::writeString(std::string_view string) {
    for (const char character : quoted(string)) {
        if (character == '/') {
            text_ += '\\';
        }
        text_ += character;
    }
}

/// Keys are ours: letters, digits and underscores, with nothing to escape.
void JSONWriter::writeKey(std::string_view key) {
    text_ += '"';
    text_ += key;
    text_ += "\":";
}

/// A comma, except in front of the first member or element.
void JSONWriter::separate() {
    if (text_.back() != '{' && text_.back() != '[') {
        text_ += ',';
    }
}

}  // namespace quillo
