// SPDX-License-Identifier: GPL-3.0-or-later
// What a user types: into every kind of field, as a rule's name, as an event to explain.
#include <limits>
#include <string>
#include <string_view>

#include "FuzzInput.hpp"
#include "FuzzRules.hpp"
#include "analysis/AskedEvent.hpp"
#include "editor/DecimalText.hpp"
#include "editor/RuleListEditor.hpp"
#include "editor/ValueFormatters.hpp"
#include "platform/FatalError.hpp"

using namespace quillo;
using fuzz::require;

namespace {

template <class... Formatters>
void typeInto(std::string_view text) {
    const auto check = [&](const auto& formatter) {
        const auto value = formatter.parse(text);
        require(formatter.parse(formatter.format(value)) == value, "a field reads what it shows");
    };
    (check(Formatters{}), ...);
}

void readNumbers(std::string_view text) {
    constexpr auto greatest = std::numeric_limits<std::uint64_t>::max();
    if (const auto number = parseUnsignedDecimal(text, greatest)) {
        require(parseUnsignedDecimal(std::to_string(*number), *number) == number, "a number reads as itself");
        require(*number == 0 || !parseUnsignedDecimal(text, *number - 1), "no number is above the limit");
    }
    if (const auto number = parseSignedDecimal(text)) {
        require(parseSignedDecimal(std::to_string(*number)) == number, "a number reads as itself");
    }
}

void nameARule(std::string_view text) {
    auto element = elementFromRule(fuzz::fuzzRules().front());
    element.rule.name = text;
    try {
        require(nextIndex({element}) != 0 || text == "Message #-1", "the next rule has another number");
    } catch (const FatalError&) {
        require(text.ends_with(std::to_string(std::numeric_limits<std::int64_t>::max())),
                "only the greatest number has no next one");
    }
}

void ask(std::string_view text) {
    try {
        static_cast<void>(parseAskedEvent(text));
    } catch (const AskedEventError& error) {
        require(!std::string_view(error.what()).empty(), "a refusal has words");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(data, data + size);
    typeInto<VelocityFormatter, ContollerValueFormatter, PressureValueFormatter, BankFormatter,
             PitchValueFormatter, DelayValueFormatter, TriggerValueFormatter, SystemExclusiveFormatter,
             NameFormatter>(text);
    readNumbers(text);
    nameARule(text);
    ask(text);
    return 0;
}
