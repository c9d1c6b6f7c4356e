// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/PluginData.hpp"

#include <string>
#include <utility>
#include <variant>

#include "persistence/DecodingError.hpp"
#include "persistence/JSONReader.hpp"
#include "persistence/JSONWriter.hpp"
#include "persistence/PluginDataV3.hpp"
#include "persistence/RuleDescriptions.hpp"
#include "persistence/RuleV1.hpp"
#include "persistence/RuleV1Descriptions.hpp"
#include "persistence/RuleV2.hpp"
#include "platform/FatalError.hpp"
#include "rules/RuleLabel.hpp"

namespace quillo {

namespace {

/// A value, or why there is none.
template <class T>
using Attempt = std::variant<T, DecodingError>;

template <class T>
Attempt<T> attempt(const JSON& value, const JSONPath& path) {
    try {
        return JSONReader().read<T>(value, path);
    } catch (const DecodingError& error) {
        return error;
    }
}

/// Reads an array of nameless rules and counts those of the oldest form.
class BareArrayReader {
public:
    [[nodiscard]] std::vector<Rule> read(const JSON& document);
    [[nodiscard]] std::size_t migratedRules() const { return migratedRules_; }

private:
    RuleV2 readElement(const JSON& element, std::size_t position);
    RuleV2 readOldest(const JSON& element, std::size_t position, const DecodingError& newerFormError);

    std::size_t migratedRules_ = 0;
};

std::vector<Rule> BareArrayReader::read(const JSON& document) {
    const JSONPath root;
    JSONReader().requireArray(document, root);
    std::vector<Rule> rules;
    rules.reserve(document.size());
    for (const auto& element : document) {
        auto rule = readElement(element, rules.size());
        auto name = "Message #" + std::to_string(rules.size() + 1);
        rules.push_back({std::move(rule.output), rule.trigger, std::move(name)});
    }
    return rules;
}

RuleV2 BareArrayReader::readElement(const JSON& element, std::size_t position) {
    auto newer = attempt<RuleV2Helper>(element, JSONPath(JSONPath(), position));
    if (auto* rule = std::get_if<RuleV2Helper>(&newer)) {
        return {std::move(rule->output), rule->trigger};
    }
    return readOldest(element, position, std::get<DecodingError>(newer));
}

RuleV2 BareArrayReader::readOldest(const JSON& element, std::size_t position,
                                   const DecodingError& newerFormError) {
    const auto oldest = attempt<RuleV1>(element, JSONPath(JSONPath(), position));
    if (const auto* error = std::get_if<DecodingError>(&oldest)) {
        throw DecodingError::ofBothReadings(*error, "a V2 rule", newerFormError);
    }
    ++migratedRules_;
    try {
        return migrated(std::get<RuleV1>(oldest));
    } catch (const FatalError& error) {
        throw error.about(ruleLabel(position));
    }
}

ReadDocument readBareArray(const JSON& document) {
    BareArrayReader reader;
    PluginData data{reader.read(document)};
    return {std::move(data), ReadDocument::Form::bareArray, reader.migratedRules()};
}

/// A document that is no array fails as a bare array; what it lacks as a current document is then
/// reported.
ReadDocument readOlderForms(const JSON& document, const DecodingError& currentFormError) {
    try {
        return readBareArray(document);
    } catch (const DecodingError& error) {
        if (document.is_array()) {
            throw;
        }
        throw DecodingError::ofBothReadings(error, "a current document", currentFormError);
    }
}

/// Fails for a shelf whose rules stand nowhere in the list, or not in its order.
void requirePlaces(JSONReader& reader, const PluginData& data) {
    const JSONPath root;
    const JSONPath shelf(root, "shelf");
    std::size_t before = 0;
    for (std::size_t index = 0; index < data.shelf.size(); ++index) {
        const JSONPath element(shelf, index);
        const std::size_t place = data.shelf[index].place;
        if (place < before || place > data.rules.size()) {
            reader.fail(JSONPath(element, "place"), "expected a place from " + std::to_string(before) +
                                                        " to " + std::to_string(data.rules.size()) +
                                                        ", found " + std::to_string(place));
        }
        before = place;
    }
}

Attempt<PluginData> attemptCurrentForm(const JSON& document) try {
    JSONReader reader;
    auto stored = reader.read<PluginDataV3>(document, JSONPath());
    PluginData data{std::move(stored.rules), std::move(stored.shelf).value_or(RuleShelf())};
    requirePlaces(reader, data);
    return data;
} catch (const DecodingError& error) {
    return error;
}

PluginDataV3 stored(const PluginData& data) {
    return {data.rules, data.shelf.empty() ? std::nullopt : std::optional(data.shelf)};
}

}  // namespace

ReadDocument readDocument(std::span<const std::uint8_t> document) {
    const auto json = parseJSON(document);
    auto current = attemptCurrentForm(json);
    if (auto* data = std::get_if<PluginData>(&current)) {
        return {std::move(*data), ReadDocument::Form::current, 0};
    }
    return readOlderForms(json, std::get<DecodingError>(current));
}

PluginData PluginData::read(std::span<const std::uint8_t> document) {
    return readDocument(document).data;
}

std::vector<std::uint8_t> PluginData::write() const {
    const auto text = encode(stored(*this));
    return {text.begin(), text.end()};
}

}  // namespace quillo

std::size_t std::hash<quillo::PluginDataV3>::operator()(const quillo::PluginDataV3& data) const {
    return std::hash<std::string>()(quillo::encode(data));
}

std::size_t std::hash<quillo::PluginData>::operator()(const quillo::PluginData& data) const {
    return std::hash<quillo::PluginDataV3>()(quillo::stored(data));
}
