// SPDX-License-Identifier: GPL-3.0-or-later
#include "scriptedhost/ScriptAction.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "audiounit/MIDIQuilloAUAudioUnit.hpp"
#include "persistence/JSONReader.hpp"
#include "persistence/RuleDescriptions.hpp"
#include "platform/Base64.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

namespace {

/// The keys of an object in a script, read strictly: a value of another type, null included, is an error that
/// says where. Throws `DecodingError`. Must not outlive the object or its path.
///
///     const ScriptKeys keys(object, path);
///     const auto frames = keys.require<std::uint32_t>("frames");
///     const auto channels = keys.valueOr<std::uint32_t>("inputChannels", 2);
class ScriptKeys {
public:
    /// Fails unless `value` is an object.
    ScriptKeys(const JSON& value, const JSONPath& path) : object_(value), path_(path) {
        JSONReader().requireObject(value, path);
    }

    [[nodiscard]] bool has(std::string_view key) const { return object_.contains(key); }

    /// The value of a key that must be there.
    [[nodiscard]] const JSON& at(std::string_view key) const {
        return JSONReader().requireKey(object_, key, path_);
    }

    /// Where the value of a key lies.
    [[nodiscard]] JSONPath pathOf(std::string_view key) const { return {path_, key}; }

    /// The value of a key that must be there, as a described type, a number, a Boolean, a string or a list.
    template <class T>
    [[nodiscard]] T require(std::string_view key) const {
        return JSONReader().read<T>(at(key), pathOf(key));
    }

    /// The same, or `fallback` when the key is not there.
    template <class T>
    [[nodiscard]] T valueOr(std::string_view key, T fallback) const {
        return has(key) ? require<T>(key) : fallback;
    }

    /// Fails for the whole object.
    [[noreturn]] void fail(const std::string& what) const { JSONReader().fail(path_, what); }

private:
    const JSON& object_;
    const JSONPath& path_;
};

StateDictionary stateOf(Data document) {
    return {{stateKey, std::move(document)}};
}

script::Restore parseStateText(const ScriptKeys& keys) {
    const auto& state = keys.at("state");
    if (state.is_null()) {
        return {std::nullopt};
    }
    if (!state.is_string()) {
        JSONReader().failExpecting("a string or null", state, keys.pathOf("state"));
    }
    const auto& text = state.get_ref<const std::string&>();
    return {stateOf({text.begin(), text.end()})};
}

script::Restore parseStateBytes(const ScriptKeys& keys) {
    auto bytes = decodeBase64(keys.require<std::string>("base64"));
    if (!bytes) {
        JSONReader().fail(keys.pathOf("base64"), "not Base64");
    }
    return {stateOf(*std::move(bytes))};
}

StateValue stateValueOf(const JSON& value) {
    if (value.is_string()) {
        return value.get<std::string>();
    }
    return value.is_number() ? StateValue(value.get<double>()) : StateValue(std::monostate());
}

script::Restore parseStateDictionary(const ScriptKeys& keys) {
    const auto path = keys.pathOf("dictionary");
    const auto& dictionary = keys.at("dictionary");
    JSONReader().requireObject(dictionary, path);
    StateDictionary state;
    for (const auto& [key, value] : dictionary.items()) {
        state.emplace(key, stateValueOf(value));
    }
    return {std::move(state)};
}

ScriptAction parseRestore(const ScriptKeys& keys) {
    struct Source {
        std::string_view key;
        script::Restore (*parse)(const ScriptKeys& keys);
    };
    constexpr std::array sources{Source{"state", &parseStateText}, Source{"base64", &parseStateBytes},
                                 Source{"dictionary", &parseStateDictionary}};
    const auto isThere = [&](const Source& source) { return keys.has(source.key); };
    if (std::ranges::count_if(sources, isThere) != 1) {
        keys.fail(R"(expected one of "state", "base64" and "dictionary")");
    }
    return std::ranges::find_if(sources, isThere)->parse(keys);
}

ScriptAction parseAllocate(const ScriptKeys& keys) {
    const script::Allocate defaults;
    return script::Allocate{keys.valueOr("sampleRate", defaults.sampleRate),
                            keys.valueOr("inputChannels", defaults.inputChannels),
                            keys.valueOr("outputChannels", defaults.outputChannels)};
}

ScriptAction parseTransport(const ScriptKeys& keys) {
    if (!keys.valueOr("present", true)) {
        return script::Transport{std::nullopt};
    }
    return script::Transport{script::TransportState{keys.require<AUHostTransportStateFlags>("flags"),
                                                    keys.require<double>("position")}};
}

ScriptAction parseOutput(const ScriptKeys& keys) {
    if (!keys.has("failAfter") && !keys.has("status")) {
        return script::Output{keys.require<bool>("present"), std::nullopt};
    }
    const script::OutputFailure failure{keys.require<std::uint64_t>("failAfter"),
                                        keys.require<OSStatus>("status")};
    if (!keys.valueOr("present", true)) {
        keys.fail("an output block that is not present cannot fail");
    }
    return script::Output{true, failure};
}

script::RenderEvent parseMIDIEvent(const ScriptKeys& keys) {
    const auto bytes = keys.require<std::vector<std::uint8_t>>("bytes");
    AUMIDIEvent event;
    if (bytes.size() > event.data.size()) {
        JSONReader().fail(keys.pathOf("bytes"), "a MIDI event has no more than three bytes");
    }
    event.eventSampleTime = keys.require<AUEventSampleTime>("time");
    std::ranges::copy(bytes, event.data.begin());
    event.length = keys.valueOr("length", static_cast<std::uint16_t>(bytes.size()));
    if (event.length > event.data.size()) {
        JSONReader().fail(keys.pathOf("length"), "a MIDI event's length is 0 to 3");
    }
    return event;
}

script::RenderEvent parseSysExEvent(const ScriptKeys& keys) {
    return script::SysExEvent{keys.require<AUEventSampleTime>("time"),
                              keys.require<std::vector<std::uint8_t>>("bytes")};
}

script::RenderEvent parsePlainEvent(const ScriptKeys& keys, AURenderEventType type) {
    return AURenderEvent{nullptr, keys.require<AUEventSampleTime>("time"), type};
}

script::RenderEvent parseEvent(const JSON& value, const JSONPath& path) {
    const ScriptKeys keys(value, path);
    const auto type = keys.valueOr("type", static_cast<std::uint8_t>(AURenderEventType::midi));
    switch (static_cast<AURenderEventType>(type)) {
    case AURenderEventType::midi: return parseMIDIEvent(keys);
    case AURenderEventType::midiSysEx: return parseSysExEvent(keys);
    case AURenderEventType::parameter:
    case AURenderEventType::parameterRamp: return parsePlainEvent(keys, static_cast<AURenderEventType>(type));
    }
    JSONReader().failExpecting("1, 2, 8 or 9", value["type"], keys.pathOf("type"));
}

/// Reads each element of the list under a key.
template <class Element>
std::vector<Element> parseList(const ScriptKeys& keys, std::string_view key,
                               Element (*parse)(const JSON& value, const JSONPath& path)) {
    const auto path = keys.pathOf(key);
    const auto& list = keys.at(key);
    JSONReader().requireArray(list, path);
    std::vector<Element> elements;
    for (const auto& element : list) {
        elements.push_back(parse(element, JSONPath(path, elements.size())));
    }
    return elements;
}

ScriptAction parseRender(const ScriptKeys& keys) {
    script::Render render;
    render.sampleTime = keys.require<double>("sampleTime");
    render.frames = keys.require<AUAudioFrameCount>("frames");
    if (keys.has("events")) {
        render.events = parseList<script::RenderEvent>(keys, "events", &parseEvent);
    }
    return render;
}

AUAudioUnitViewConfiguration parseSize(const JSON& value, const JSONPath& path) {
    const auto size = JSONReader().read<std::vector<double>>(value, path);
    if (size.size() != 2) {
        JSONReader().fail(path, "a size is a width and a height");
    }
    return {size[0], size[1]};
}

ScriptAction parseInstall(const ScriptKeys& keys) {
    return script::Install{keys.require<std::vector<Rule>>("rules")};
}

ScriptAction parseSend(const ScriptKeys& keys) {
    return script::Send{keys.require<RuleOutputVariantsV2>("output")};
}

ScriptAction parseViews(const ScriptKeys& keys) {
    return script::Views{parseList<AUAudioUnitViewConfiguration>(keys, "sizes", &parseSize)};
}

template <class Action>
ScriptAction parseWithoutKeys(const ScriptKeys&) {
    return Action{};
}

struct Verb {
    std::string_view name;
    ScriptAction (*parse)(const ScriptKeys& keys);
};

constexpr std::array verbs{
    Verb{"create", &parseWithoutKeys<script::Create>},
    Verb{"restore", &parseRestore},
    Verb{"save", &parseWithoutKeys<script::Save>},
    Verb{"allocate", &parseAllocate},
    Verb{"deallocate", &parseWithoutKeys<script::Deallocate>},
    Verb{"install", &parseInstall},
    Verb{"send", &parseSend},
    Verb{"transport", &parseTransport},
    Verb{"output", &parseOutput},
    Verb{"render", &parseRender},
    Verb{"describe", &parseWithoutKeys<script::Describe>},
    Verb{"views", &parseViews},
    Verb{"queue", &parseWithoutKeys<script::Queue>},
};

}  // namespace

ScriptAction parseScriptAction(std::string_view line) {
    const auto object = parseJSON({reinterpret_cast<const std::uint8_t*>(line.data()), line.size()});
    const JSONPath root;
    const ScriptKeys keys(object, root);
    const auto name = keys.require<std::string>("do");
    const auto verb = std::ranges::find(verbs, name, &Verb::name);
    if (verb == verbs.end()) {
        JSONReader().fail(keys.pathOf("do"), "there is no action " + inQuotes(name));
    }
    return verb->parse(keys);
}

}  // namespace quillo
