// SPDX-License-Identifier: GPL-3.0-or-later
#include "otherformats/Mapping.hpp"

#include <algorithm>
#include <charconv>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "midi/MessageLength.hpp"
#include "midi/Status.hpp"
#include "otherformats/OtherFormat.hpp"
#include "otherformats/TextLines.hpp"
#include "platform/PlainText.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

namespace {

using Section = std::map<std::string, TextLine>;  ///< values by key

/// "Incoming" and 3 of "Incoming3".
std::pair<std::string, std::optional<unsigned>> splitKey(const std::string& key) {
    const auto end = key.find_last_not_of("0123456789") + 1;
    unsigned number = 0;
    const auto digits = std::string_view(key).substr(end);
    const auto [stop, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    const bool isNumbered = error == std::errc{} && stop == digits.data() + digits.size();
    return {key.substr(0, end), isNumbered ? std::optional(number) : std::nullopt};
}

/// A byte of a message in the file: its value, or a variable.
struct Part {
    std::optional<std::uint8_t> value;
    std::string variable;
};

/// What keeps a translator from being a mapping.
class NotTaken : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

Part partOf(const std::string& pair) {
    unsigned value = 0;
    const auto [end, error] = std::from_chars(pair.data(), pair.data() + pair.size(), value, 16);
    if (pair.size() == 2 && error == std::errc{} && end == pair.data() + pair.size()) {
        return {static_cast<std::uint8_t>(value), ""};
    }
    if (pair.size() == 2 && pair[0] == pair[1] && pair[0] >= 'g' && pair[0] <= 'z') {
        return {std::nullopt, pair};
    }
    throw NotTaken(inQuotes(pair) + " is neither a byte in hexadecimal nor a variable such as pp");
}

std::vector<Part> partsOf(const std::string& text) {
    constexpr std::string_view prefix = "MID1";
    if (!text.starts_with(prefix)) {
        throw NotTaken(inQuotes(text, 40) + " is not a plain MIDI message, which begins with MID1");
    }
    auto bytes = inLowerCase(text.substr(prefix.size()));
    std::erase(bytes, ' ');
    std::vector<Part> parts;
    for (std::size_t at = 0; at < bytes.size(); at += 2) {
        parts.push_back(partOf(bytes.substr(at, 2)));
    }
    if (parts.empty() || parts.front().value.value_or(0) < midi::noteOff) {
        throw NotTaken("its message does not begin with a status byte");
    }
    return parts;
}

/// Where each variable comes from.
using Variables = std::map<std::string, std::size_t>;

Variables readIncoming(const std::vector<Part>& parts, Mapping& mapping) {
    if (messageLength(*parts.front().value) != parts.size()) {
        throw NotTaken("it waits for system exclusive, or for a message that is not complete");
    }
    mapping.length = parts.size();
    Variables variables;
    for (std::size_t at = 0; at < parts.size(); ++at) {
        const auto& part = parts[at];
        if (part.value) {
            mapping.filter.at(at) = {*part.value, 0xFF};
        } else if (!variables.emplace(part.variable, at).second) {
            throw NotTaken("it waits for two equal bytes, " + part.variable);
        }
    }
    return variables;
}

ByteMaker makerOf(const Part& part, const Variables& variables) {
    if (part.value) {
        return {0, 0, *part.value};
    }
    const auto found = variables.find(part.variable);
    if (found == variables.end()) {
        throw NotTaken("it sends " + part.variable + ", which does not come in");
    }
    return {found->second, 0x7F, 0};
}

/// How many bytes the message has that begins at `at`.
std::size_t lengthAt(const std::vector<Part>& parts, std::size_t at) {
    const auto status = parts[at].value.value_or(0);
    if (status != midi::systemExclusive) {
        return messageLength(status);
    }
    const auto end = std::find_if(parts.begin() + static_cast<std::ptrdiff_t>(at), parts.end(),
                                  [](const Part& part) { return part.value == midi::endOfExclusive; });
    return end == parts.end() ? 0 : static_cast<std::size_t>(end - parts.begin()) + 1 - at;
}

void readOutgoing(const std::vector<Part>& parts, const Variables& variables, Mapping& mapping) {
    for (std::size_t at = 0; at < parts.size();) {
        const auto length = lengthAt(parts, at);
        if (length == 0 || at + length > parts.size()) {
            throw NotTaken("it sends a message that is not complete");
        }
        auto& message = mapping.messages.emplace_back();
        for (const auto end = at + length; at < end; ++at) {
            message.push_back(makerOf(parts[at], variables));
        }
    }
}

/// Reads the translators of one preset.
class PresetReader {
public:
    PresetReader(const Section& section, MappingFile& file) : file_(file) {
        for (const auto& [key, line] : section) {
            const auto [name, number] = splitKey(key);
            if (number) {
                translators_[*number][name] = line;
            } else if (isOfTranslator(key)) {
                file_.omissions.push_back(
                    {line.number, inQuotes(key, 40) + " does not end with the number of a translator"});
            }
        }
        const auto active = section.find("Active");
        isOff_ = active != section.end() && active->second.text == "0";
    }

    void read() const {
        for (const auto& [number, keys] : translators_) {
            const auto line = lineOf(keys);
            try {
                readTranslator(line, keys);
            } catch (const NotTaken& reason) {
                file_.omissions.push_back({line, reason.what()});
            }
        }
    }

private:
    static bool isOfTranslator(const std::string& key) {
        return key.starts_with("Incoming") || key.starts_with("Outgoing") || key.starts_with("Options");
    }

    static std::size_t lineOf(const Section& keys) {
        const auto incoming = keys.find("Incoming");
        return incoming == keys.end() ? keys.begin()->second.number : incoming->second.number;
    }

    static std::string textOf(const Section& keys, const std::string& key) {
        const auto found = keys.find(key);
        return found == keys.end() ? "" : found->second.text;
    }

    void readTranslator(std::size_t line, const Section& keys) const {
        for (const auto& [key, value] : keys) {
            if (key != "Name" && key != "Incoming" && key != "Outgoing" && key != "Options") {
                throw NotTaken("it has " + inQuotes(key, 40) + ", which no rule can have");
            }
        }
        const auto options = textOf(keys, "Options");
        const auto name = textOf(keys, "Name");
        Mapping mapping;
        mapping.line = line;
        mapping.name = name.empty() ? "bmtp" : name;
        mapping.isLast = options.find("Stop01") != std::string::npos;
        mapping.isOff = isOff_ || options.find("Actv00") != std::string::npos;
        const auto variables = readIncoming(partsOf(textOf(keys, "Incoming")), mapping);
        readOutgoing(partsOf(textOf(keys, "Outgoing")), variables, mapping);
        file_.mappings.push_back(std::move(mapping));
    }

    MappingFile& file_;
    std::map<unsigned, Section> translators_;
    bool isOff_ = false;
};

constexpr std::string_view projectSection = "[Project]";

bool isMeaningful(const TextLine& line) {
    return !line.text.empty() && line.text.front() != ';' && line.text.front() != '#';
}

struct NamedSection {
    std::string name;
    Section keys;
    std::vector<Omission> omissions;
};

/// Of two values of one key the first counts, and the second is an omission.
void add(TextLine line, std::size_t equals, NamedSection& section) {
    auto key = line.text.substr(0, equals);
    key.erase(key.find_last_not_of(blanks) + 1);
    line.text.erase(0, std::min(line.text.find_first_not_of(blanks, equals + 1), line.text.size()));
    const auto [added, isNew] = section.keys.emplace(std::move(key), line);
    if (!isNew) {
        section.omissions.push_back({line.number, inQuotes(added->first, 40) + " stands in line " +
                                                      std::to_string(added->second.number) + " already"});
    }
}

std::vector<NamedSection> sectionsOf(std::string_view text) {
    std::vector<NamedSection> sections;
    TextLines lines(text);
    while (const auto next = lines.next()) {
        const auto& line = *next;
        const auto equals = line.text.find('=');
        if (!isMeaningful(line)) {
            continue;
        }
        if (line.text.front() == '[' && line.text.back() == ']') {
            sections.push_back({line.text.substr(1, line.text.size() - 2), {}, {}});
        } else if (equals == std::string::npos || sections.empty()) {
            throw OtherFormatError(line.number,
                                   inQuotes(line.text, 40) + " is neither a section nor key=value");
        } else {
            add(line, equals, sections.back());
        }
    }
    return sections;
}

void requireVersion(const Section& project) {
    const auto version = project.find("Version");
    if (version == project.end()) {
        throw OtherFormatError(1, "the project has no version");
    }
    if (version->second.text != "1") {
        throw OtherFormatError(version->second.number, "projects of version " +
                                                           inQuotes(version->second.text, 20) +
                                                           " cannot be read");
    }
}

}  // namespace

bool isBmtp(std::string_view text) {
    TextLines lines(text);
    auto line = lines.next();
    while (line && !isMeaningful(*line)) {
        line = lines.next();
    }
    return line && line->text == projectSection;
}

MappingFile readBmtp(std::string_view text) {
    MappingFile file;
    for (const auto& section : sectionsOf(text)) {
        if (section.name == "Project") {
            requireVersion(section.keys);
        } else if (section.name.starts_with("Preset.")) {
            file.omissions.insert(file.omissions.end(), section.omissions.begin(), section.omissions.end());
            PresetReader(section.keys, file).read();
        }
    }
    return file;
}

}  // namespace quillo
