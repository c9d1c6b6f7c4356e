// SPDX-License-Identifier: GPL-3.0-or-later
#include "otherformats/Mapping.hpp"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "otherformats/OtherFormat.hpp"
#include "otherformats/TextLines.hpp"
#include "platform/PlainText.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

namespace {

bool isComment(const TextLine& line) {
    return line.text.empty() || line.text.front() == '#';
}

/// A whole number, decimal or hexadecimal behind "0x".
std::optional<unsigned> number(std::string_view text) {
    const bool isHex = text.starts_with("0x") || text.starts_with("0X");
    text.remove_prefix(isHex ? 2 : 0);
    unsigned value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, isHex ? 16 : 10);
    const bool isWhole = error == std::errc{} && end == text.data() + text.size();
    return isWhole ? std::optional(value) : std::nullopt;
}

/// "C3", "G#0", "Bb8", in any case: C-1 is 0.
std::optional<unsigned> note(const std::string& lower) {
    constexpr std::string_view letters = "c d ef g a b";
    const auto letter = lower.empty() || lower[0] == ' ' ? std::string_view::npos : letters.find(lower[0]);
    if (letter == std::string_view::npos) {
        return std::nullopt;
    }
    const bool isSharp = lower.size() > 1 && lower[1] == '#';
    const bool isFlat = lower.size() > 1 && lower[1] == 'b';
    const auto behind = std::string_view(lower).substr(isSharp || isFlat ? 2 : 1);
    std::int8_t octave = 0;
    const auto [end, error] = std::from_chars(behind.data(), behind.data() + behind.size(), octave);
    const auto value = (octave + 1) * 12 + static_cast<int>(letter) + (isSharp ? 1 : 0) - (isFlat ? 1 : 0);
    const bool isNote = error == std::errc{} && end == behind.data() + behind.size() && octave <= 9 &&
                        octave >= -1 && value >= 0 && value <= 127;
    return isNote ? std::optional(static_cast<unsigned>(value)) : std::nullopt;
}

/// Reads the fields of one line.
class FieldReader {
public:
    explicit FieldReader(std::size_t line) : line_(line) {}

    [[nodiscard]] ByteFilter filter(const std::string& field, std::size_t place) const {
        static const std::map<std::string, ByteFilter> statuses{
            {"note", {0x80, 0xE0}}, {"noteoff", {0x80, 0xF0}},     {"noteon", {0x90, 0xF0}},
            {"cc", {0xB0, 0xF0}},   {"keypressure", {0xA0, 0xF0}}, {"chanpressure", {0xD0, 0xF0}},
            {"pitch", {0xE0, 0xF0}}};
        const auto lower = inLowerCase(field);
        if (lower == "any") {
            return {};
        }
        const auto status = statuses.find(lower);
        if (place == 0 && status != statuses.end()) {
            return status->second;
        }
        if (place == 0 && lower.starts_with("notec")) {
            return {static_cast<std::uint8_t>(0x80U | channel(field, 5)), 0xEF};
        }
        const auto [value, mask] = masked(field, 0xFF);
        return {value, mask};
    }

    [[nodiscard]] ByteMaker maker(const std::string& field, std::size_t place) const {
        const auto lower = inLowerCase(field);
        if (lower == "same") {
            return {place, 0xFF, 0};
        }
        if (place == 0 && lower.starts_with("chn")) {
            return {place, 0xF0, channel(field, 3)};
        }
        const auto [value, mask] = masked(field, 0);
        return {place, mask, value};
    }

private:
    [[noreturn]] void refuse(const std::string& field) const {
        throw OtherFormatError(line_, inQuotes(field) +
                                          " is not a field: fields are value/mask, each from 0 to "
                                          "255, notes as C3, and words as NoteOn, ANY or SAME");
    }

    [[nodiscard]] std::uint8_t byte(const std::string& text, const std::string& field) const {
        const auto value = number(text);
        if (!value || *value > 0xFF) {
            refuse(field);
        }
        return static_cast<std::uint8_t>(*value);
    }

    [[nodiscard]] std::uint8_t channel(const std::string& field, std::size_t behind) const {
        const auto value = byte(field.substr(behind), field);
        if (value > 15) {
            refuse(field);
        }
        return value;
    }

    [[nodiscard]] std::pair<std::uint8_t, std::uint8_t> masked(const std::string& field,
                                                               std::uint8_t otherwise) const {
        const auto slash = std::min(field.find('/'), field.size());
        const auto named = note(inLowerCase(field.substr(0, slash)));
        const auto value = named ? static_cast<std::uint8_t>(*named) : byte(field.substr(0, slash), field);
        return {value, slash == field.size() ? otherwise : byte(field.substr(slash + 1), field)};
    }

    std::size_t line_;
};

Mapping mappingOf(const TextLine& line, std::size_t bar, std::string name) {
    const auto filters = splitAtBlanks(line.text.substr(0, bar));
    const auto makers = splitAtBlanks(line.text.substr(bar + 1));
    if (filters.empty() || filters.size() > 3 || makers.size() != filters.size()) {
        throw OtherFormatError(line.number,
                               "on each side of | stand one to three fields, and as many on both");
    }
    const FieldReader read(line.number);
    Mapping mapping;
    mapping.line = line.number;
    mapping.name = std::move(name);
    mapping.messages.emplace_back();
    mapping.length = filters.size();
    for (std::size_t place = 0; place < filters.size(); ++place) {
        mapping.filter.at(place) = read.filter(filters[place], place);
        mapping.messages.front().push_back(read.maker(makers[place], place));
    }
    return mapping;
}

std::string textOfComment(const std::string& line) {
    const auto begin = line.find_first_not_of("# \t");
    return begin == std::string::npos ? "" : line.substr(begin);
}

}  // namespace

bool isMidimap(std::string_view text) {
    const std::vector<std::string> header{"midimap", "v1"};
    TextLines lines(text);
    auto line = lines.next();
    while (line && isComment(*line)) {
        line = lines.next();
    }
    return line && splitAtBlanks(inLowerCase(line->text)) == header;
}

MappingFile readMidimap(std::string_view text) {
    MappingFile file;
    file.passesUnmatched = false;
    bool isMatchAll = false;
    bool isBegun = false;
    std::string name;
    TextLines lines(text);
    while (const auto line = lines.next()) {
        const auto bar = line->text.find('|');
        const auto word = inLowerCase(line->text);
        if (isComment(*line)) {
            name = textOfComment(line->text);
        } else if (!isBegun) {
            isBegun = true;
        } else if (bar != std::string::npos) {
            file.mappings.push_back(mappingOf(*line, bar, name.empty() ? "midimap" : name));
        } else if (word == "forward-unmatched") {
            file.passesUnmatched = true;
        } else if (word == "match-all") {
            isMatchAll = true;
        } else {
            throw OtherFormatError(line->number, inQuotes(line->text) +
                                                     " is neither a rule nor forward-unmatched "
                                                     "or match-all");
        }
    }
    for (auto& mapping : file.mappings) {
        mapping.isLast = !isMatchAll;
    }
    return file;
}

}  // namespace quillo
