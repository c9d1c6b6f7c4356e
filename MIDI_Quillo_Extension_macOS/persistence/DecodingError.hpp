// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace quillo {

/// Why a document, or a value of one, could not be read. The text says where and what:
///
///     rules[3].trigger.MessageBased: missing key "passTrough"
///
/// Where two readings were tried and both failed, the text begins with the error of the one that decides and
/// goes on with the other; `mostUseful` is the one of them that a person who wrote the document wants to see.
class DecodingError : public std::runtime_error {
public:
    /// `valuesRead` is how far the reading came, in values begun.
    explicit DecodingError(const std::string& text, std::size_t valuesRead = 0);

    /// With a text about a part of the document: what is wrong, behind `path` where that is not empty.
    DecodingError(const std::string& text, std::string path, std::string problem, std::size_t valuesRead);

    /// Both readings failed: `deciding` by the rules of the document, and `other`, which was tried as
    /// `otherForm` ("a current document"). The reading that came further is the most useful one, `other` when
    /// both came equally far.
    [[nodiscard]] static DecodingError ofBothReadings(const DecodingError& deciding,
                                                      std::string_view otherForm, const DecodingError& other);

    /// One line without any other reading's error.
    [[nodiscard]] const std::string& mostUseful() const { return mostUseful_.text; }

    /// Where the most useful one lies, such as `rules[3].trigger`; empty for the whole document.
    [[nodiscard]] const std::string& path() const { return mostUseful_.path; }
    /// What the most useful one says of that place.
    [[nodiscard]] const std::string& problem() const { return mostUseful_.problem; }

private:
    struct Finding {
        std::string text;
        std::string path;
        std::string problem;
    };

    Finding mostUseful_;
    std::size_t valuesRead_;
};

/// A value that has no document: a name that is not valid UTF-8.
class EncodingError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace quillo
