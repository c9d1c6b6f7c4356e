// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/JackOptions.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <sstream>
#include <string_view>
#include <system_error>

#include "commandline/CommandFailure.hpp"
#include "hosts/jack/ConnectionKeeper.hpp"
#include "hosts/jack/SessionFiles.hpp"
#include "midi/MessageLength.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

namespace {

constexpr std::array<Option, 15> known{{{"--preset", true},
                                        {"--connect-in", true, true},
                                        {"--connect-out", true, true},
                                        {"--server", true},
                                        {"--start-server", false},
                                        {"--wait", false},
                                        {"--name", true},
                                        {"--no-window", false},
                                        {"--scale", true},
                                        {"--log", false},
                                        {"--panic-message", true},
                                        {"--go-back", true},
                                        {"--history", false},
                                        {"--help", false},
                                        {"--version", false}}};

/// JACK puts a colon between the names of a client and of its port.
void requireName(const std::string& option, const std::string& name) {
    if (name.empty() || name.size() > JackOptions::longestName) {
        throw UsageError("option " + option + ": a name has 1 to " +
                         std::to_string(JackOptions::longestName) + " bytes");
    }
    if (std::ranges::any_of(name, [](char c) { return c == ':' || static_cast<unsigned char>(c) < ' '; })) {
        throw UsageError("option " + option + ": " + inQuotes(name) +
                         " holds a colon or a control character");
    }
}

/// The bytes of a text in hexadecimal, two digits each, with blanks between them or without; nothing when it
/// is something else.
std::optional<std::vector<std::uint8_t>> bytesOf(const std::string& text) {
    std::vector<std::uint8_t> bytes;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        for (std::size_t i = 0; i < word.size(); i += 2) {
            const auto digits = std::string_view(word).substr(i, 2);
            const auto* const end = digits.data() + 2;
            const auto [read, error] =
                std::from_chars(digits.data(), digits.data() + digits.size(), bytes.emplace_back(), 16);
            if (error != std::errc() || read != end) {
                return std::nullopt;
            }
        }
    }
    return bytes;
}

/// System exclusive has no length, and reaches no rule.
std::vector<std::uint8_t> panicMessageOf(const std::string& text) {
    const auto bytes = bytesOf(text);
    const bool isMessage = bytes && !bytes->empty() && bytes->size() <= messageLength(bytes->front()) &&
                           std::all_of(bytes->begin() + 1, bytes->end(), midi::isData);
    if (!isMessage) {
        throw UsageError("option --panic-message: " + inQuotes(text) +
                         " is not how a MIDI message begins, in hexadecimal: such as \"b0 50 7f\"");
    }
    return *bytes;
}

void requireSense(const JackOptions& options) {
    requireName("--name", options.name);
    if (options.goBack > 0 && options.preset) {
        throw UsageError(
            "--go-back takes the rules of an earlier session, --preset those of a file: give one");
    }
    if (options.server && options.server->empty()) {
        throw UsageError("option --server: the name is empty");
    }
    static_cast<void>(ConnectionKeeper(options.connectIn, options.connectOut));
}

}  // namespace

std::span<const Option> jackOptions() {
    return known;
}

JackOptions readJackOptions(std::span<const std::string> words) {
    const Arguments arguments(words, known);
    if (!arguments.operands().empty()) {
        throw UsageError("what is " + inQuotes(arguments.operands().front()) +
                         "? A preset is given as --preset PRESET.json");
    }
    JackOptions options;
    options.preset = arguments.text("--preset");
    options.connectIn = arguments.texts("--connect-in");
    options.connectOut = arguments.texts("--connect-out");
    options.server = arguments.text("--server");
    options.startServer = arguments.has("--start-server");
    options.wait = arguments.has("--wait");
    options.name = arguments.text("--name").value_or(options.name);
    options.window = !arguments.has("--no-window");
    if (arguments.has("--scale")) {
        options.scale = arguments.number("--scale", JackOptions::leastScale, JackOptions::greatestScale, 1);
    }
    options.log = arguments.has("--log");
    if (const auto message = arguments.text("--panic-message")) {
        options.panicMessage = panicMessageOf(*message);
    }
    options.goBack = arguments.wholeNumber("--go-back", 1, SessionFiles::keptVersions - 1, 0);
    options.history = arguments.has("--history");
    options.help = arguments.has("--help");
    options.version = arguments.has("--version");
    requireSense(options);
    return options;
}

}  // namespace quillo
