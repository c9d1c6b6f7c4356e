// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/ProblemInWords.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <string_view>

#include <nlohmann/json.hpp>

#include "persistence/JSONParser.hpp"
#include "platform/QuotedText.hpp"
#include "rules/RuleLabel.hpp"

namespace quillo {

namespace {

constexpr std::string_view shelf = "shelf";

/// Where a problem lies: in which rule, from 0, and where in it.
struct Place {
    bool isOnShelf;
    std::size_t rule;
    std::string_view inRule;
};

/// Whether it was there.
bool removePrefix(std::string_view& text, std::string_view prefix) {
    const bool isThere = text.starts_with(prefix);
    text.remove_prefix(isThere ? prefix.size() : 0);
    return isThere;
}

/// Of `rules[3].trigger`, of `shelf[0].rule.trigger` or, in older documents, of `[3].trigger`. Nothing for a
/// place outside of any rule.
std::optional<Place> placeOf(std::string_view path) {
    const bool isOnShelf = removePrefix(path, shelf);
    removePrefix(path, "rules");
    if (!path.starts_with('[')) {
        return std::nullopt;
    }
    Place place{.isOnShelf = isOnShelf, .rule = 0, .inRule = {}};
    const auto [end, error] = std::from_chars(path.data() + 1, path.data() + path.size(), place.rule);
    const auto digits = static_cast<std::size_t>(end - path.data());
    if (error != std::errc() || digits >= path.size()) {
        return std::nullopt;
    }
    place.inRule = path.substr(digits + 1);
    removePrefix(place.inRule, isOnShelf ? ".rule" : "");
    removePrefix(place.inRule, ".");
    return place;
}

/// The editor's name for what lies at a place in a rule: that of the first row whose part of the rule it lies
/// in and whose key it holds.
std::string_view fieldAt(std::string_view path) {
    struct Field {
        std::string_view part;
        std::string_view key;
        std::string_view caption;
    };
    constexpr std::array fields{
        Field{"name", "", "Name"},
        Field{"output.delay", "", "Delay (ms)"},
        Field{"output", "WithChannel._1", "Ch of the message"},
        Field{"output", "Protocol._0", "Type of the message"},
        Field{"output", "Protocol._1", "first value of the message"},
        Field{"output", "Protocol._2", "second value of the message"},
        Field{"output", "SystemExclusive", "Bytes (hex)"},
        Field{"output", "ProgramChange._0", "Ch of the message"},
        Field{"output", "Prime.ProgramChange._1", "Program of the message"},
        Field{"output", "ProgramChange._1", "Bank"},
        Field{"output", "ProgramChange._2", "Program of the message"},
        Field{"output", "", "message"},
        Field{"trigger", "passT", "Incoming"},
        Field{"trigger", "channel", "Ch of the trigger"},
        Field{"trigger", "ControlChange._1", "Value of the trigger"},
        Field{"trigger", "ControlChange", "Controller of the trigger"},
        Field{"trigger", "ProgramChange", "Program of the trigger"},
        Field{"trigger", "Note", "Note of the trigger"},
        Field{"trigger", "", "trigger"},
    };
    const auto* found = std::ranges::find_if(fields, [path](const Field& field) {
        return path.starts_with(field.part) && path.find(field.key) != std::string_view::npos;
    });
    return found != fields.end() ? found->caption : std::string_view();
}

/// A key that is missing belongs to the place. The quote behind it does no harm: places are searched.
std::string withMissingKey(std::string_view path, std::string_view problem) {
    constexpr std::string_view missing = "missing key \"";
    if (!problem.starts_with(missing)) {
        return std::string(path);
    }
    return (path.empty() ? "" : std::string(path) + ".") + std::string(problem.substr(missing.size()));
}

/// A member of what may be no object, and may lack it; null then.
const JSON* member(const JSON& value, std::string_view key) {
    const auto found = value.is_object() ? value.find(key) : value.end();
    return found != value.end() ? &*found : nullptr;
}

std::string nameOf(const Place& place, const JSON& json) {
    const auto& list = json.is_object() ? json.at(place.isOnShelf ? "shelf" : "rules") : json;
    const auto* rule = place.isOnShelf ? member(list.at(place.rule), "rule") : &list.at(place.rule);
    const auto* name = rule != nullptr ? member(*rule, "name") : nullptr;
    return name != nullptr && name->is_string() ? name->get<std::string>() : "";
}

/// Among all rules, as the editor counts them. What is wrong with the switched-off ones makes no difference.
std::size_t positionInList(std::size_t rule, const JSON& json) {
    const auto* const shelved = member(json, shelf);
    const auto isBefore = [rule](const JSON& element) {
        const auto* const place = member(element, "place");
        return place != nullptr && place->is_number_unsigned() && place->get<std::uint64_t>() <= rule;
    };
    const bool isList = shelved != nullptr && shelved->is_array();
    return rule + (isList ? static_cast<std::size_t>(std::ranges::count_if(*shelved, isBefore)) : 0);
}

std::string labelOf(const Place& place, std::span<const std::uint8_t> document) {
    const auto json = parseJSON(document);
    const auto name = nameOf(place, json);
    return place.isOnShelf ? shelvedRuleLabel(place.rule, name)
                           : ruleLabel(positionInList(place.rule, json), name);
}

}  // namespace

std::string problemInWords(const DecodingError& error, std::span<const std::uint8_t> document) {
    const auto place = placeOf(error.path());
    const auto problem = escaped(error.problem());
    if (!place && error.path() == shelf) {
        return "The list of the switched-off rules: " + problem + ".";
    }
    if (!place) {
        return "This is not a preset of MIDI Quillo, or it is damaged.";
    }
    auto words = labelOf(*place, document);
    if (const auto field = fieldAt(withMissingKey(place->inRule, error.problem())); !field.empty()) {
        words.append(", ").append(field);
    }
    return words + ": " + problem + ".";
}

bool isAboutRule(const DecodingError& error) {
    return error.path() == shelf || placeOf(error.path()).has_value();
}

}  // namespace quillo
