// SPDX-License-Identifier: GPL-3.0-or-later
#include "commandline/Arguments.hpp"

#include <algorithm>
#include <charconv>
#include <locale>
#include <sstream>
#include <system_error>
#include <type_traits>

#include "commandline/CommandFailure.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

namespace {

constexpr std::string_view hyphens = "--";

bool looksLikeOption(std::string_view word) {
    return word.size() > 1 && word.front() == '-';
}

const Option& find(std::string_view name, std::span<const Option> known) {
    const auto found = std::ranges::find(known, name, &Option::name);
    if (found == known.end()) {
        throw UsageError("unknown option " + escaped(name));
    }
    return *found;
}

/// Whether the whole of `text` is such a number.
bool read(const std::string& text, std::uint32_t& number) {
    const auto* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc{} && stop == end;
}

/// The same for digits with a decimal point, in any locale.
bool read(const std::string& text, double& number) {
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    stream >> number;
    return stream && stream.eof() && text.find_first_not_of("0123456789.") == std::string::npos;
}

/// The whole of `text` as a number from `least` to `greatest`.
template <class Number>
Number parsed(std::string_view option, const std::string& text, Number least, Number greatest) {
    Number number{};
    if (!read(text, number) || number < least || number > greatest) {
        std::ostringstream message;
        message << "option " << option << ": " << inQuotes(text) << " is not a "
                << (std::is_integral_v<Number> ? "whole number" : "number") << " from " << least << " to "
                << greatest;
        throw UsageError(message.str());
    }
    return number;
}

}  // namespace

Arguments::Arguments(std::span<const std::string> words, std::span<const Option> known) {
    while (!words.empty()) {
        const auto& word = words.front();
        words = words.subspan(1);
        if (word == hyphens) {
            operands_.insert(operands_.end(), words.begin(), words.end());
            return;
        }
        if (looksLikeOption(word)) {
            words = words.subspan(readOption(word, words, known));
        } else {
            operands_.push_back(word);
        }
    }
}

std::size_t Arguments::readOption(std::string_view word, std::span<const std::string> behind,
                                  std::span<const Option> known) {
    const auto equals = std::min(word.find('='), word.size());
    const auto& option = find(word.substr(0, equals), known);
    const std::string name(option.name);
    const bool valueInWord = equals < word.size();
    if (valueInWord && !option.takesValue) {
        throw UsageError("option " + name + " takes no value");
    }
    const bool valueBehind = option.takesValue && !valueInWord;
    if (valueBehind && (behind.empty() || behind.front().starts_with(hyphens))) {
        throw UsageError("option " + name + " needs a value");
    }
    const auto value =
        valueBehind ? std::string_view(behind.front()) : word.substr(std::min(equals + 1, word.size()));
    auto& values = values_[name];
    if (!values.empty() && !option.mayRepeat) {
        throw UsageError("option " + name + " is given twice");
    }
    values.emplace_back(value);
    return valueBehind ? 1 : 0;
}

std::optional<std::string> Arguments::text(std::string_view option) const {
    const auto found = values_.find(option);
    return found == values_.end() ? std::nullopt : std::optional(found->second.front());
}

std::vector<std::string> Arguments::texts(std::string_view option) const {
    const auto found = values_.find(option);
    return found == values_.end() ? std::vector<std::string>() : found->second;
}

std::uint32_t Arguments::wholeNumber(std::string_view option, std::uint32_t least, std::uint32_t greatest,
                                     std::uint32_t otherwise) const {
    const auto value = text(option);
    return value ? parsed(option, *value, least, greatest) : otherwise;
}

double Arguments::number(std::string_view option, double least, double greatest, double otherwise) const {
    const auto value = text(option);
    return value ? parsed(option, *value, least, greatest) : otherwise;
}

}  // namespace quillo
