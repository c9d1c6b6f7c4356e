// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/JackOptions.hpp"

#include <algorithm>
#include <array>

#include "commandline/CommandFailure.hpp"
#include "hosts/jack/SessionFiles.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

namespace {

constexpr std::array<Option, 14> known{{{"--preset", true},
                                        {"--connect-in", true, true},
                                        {"--connect-out", true, true},
                                        {"--server", true},
                                        {"--start-server", false},
                                        {"--wait", false},
                                        {"--name", true},
                                        {"--no-window", false},
                                        {"--scale", true},
                                        {"--log", false},
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

void requireSense(const JackOptions& options) {
    requireName("--name", options.name);
    if (options.goBack > 0 && options.preset) {
        throw UsageError(
            "--go-back takes the rules of an earlier session, --preset those of a file: give one");
    }
    if (options.server && options.server->empty()) {
        throw UsageError("option --server: the name is empty");
    }
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
    options.goBack = arguments.wholeNumber("--go-back", 1, SessionFiles::keptVersions - 1, 0);
    options.history = arguments.has("--history");
    options.help = arguments.has("--help");
    options.version = arguments.has("--version");
    requireSense(options);
    return options;
}

}  // namespace quillo
