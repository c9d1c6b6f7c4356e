// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillo {

/// An option that a verb knows.
struct Option {
    std::string_view name;  ///< with its two hyphens
    bool takesValue = false;
    bool mayRepeat = false;
};

/// The words that follow a verb, sorted into options and operands:
///
///     render song.mid out.mid --preset=p.json --block 64 --force
///
/// A value stands in the option's own word behind "=", or is the next word unless that begins with two
/// hyphens. Behind "--" every word is an operand. Whatever is wrong throws a `UsageError` that names the
/// option.
class Arguments {
public:
    Arguments(std::span<const std::string> words, std::span<const Option> known);

    [[nodiscard]] const std::vector<std::string>& operands() const { return operands_; }
    [[nodiscard]] bool has(std::string_view option) const { return values_.contains(option); }

    /// The option's value, if the option is there.
    [[nodiscard]] std::optional<std::string> text(std::string_view option) const;

    /// All values of an option that may repeat, in their order.
    [[nodiscard]] std::vector<std::string> texts(std::string_view option) const;

    /// The option's value as a whole number from `least` to `greatest`, `otherwise` without the option.
    [[nodiscard]] std::uint32_t wholeNumber(std::string_view option, std::uint32_t least,
                                            std::uint32_t greatest, std::uint32_t otherwise) const;

    /// The same for a number that may have decimals.
    [[nodiscard]] double number(std::string_view option, double least, double greatest,
                                double otherwise) const;

private:
    /// Stores the option that `word` names. Returns how many of the words behind it belong to it, 0 or 1.
    std::size_t readOption(std::string_view word, std::span<const std::string> behind,
                           std::span<const Option> known);

    std::vector<std::string> operands_;
    std::map<std::string, std::vector<std::string>, std::less<>> values_;
};

}  // namespace quillo
