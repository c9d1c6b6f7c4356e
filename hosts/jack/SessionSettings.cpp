// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/SessionSettings.hpp"

#include <span>
#include <sstream>
#include <string_view>
#include <utility>

#include "platform/AtomicFile.hpp"

namespace quillo {

namespace {

/// A line a setting: a word, a blank, and the value as it is. A value with a line break is left out.
class Lines {
public:
    void add(std::string_view word, std::string_view value) {
        if (!value.empty() && value.find('\n') == std::string_view::npos) {
            ((text_ += word) += ' ') += value;
            text_ += '\n';
        }
    }

    [[nodiscard]] std::span<const std::uint8_t> bytes() const {
        return {reinterpret_cast<const std::uint8_t*>(text_.data()), text_.size()};
    }

private:
    std::string text_;
};

void take(SessionSettings& settings, std::string_view word, std::string value) {
    if (word == "source") {
        settings.sources.push_back(std::move(value));
    } else if (word == "target") {
        settings.targets.push_back(std::move(value));
    } else if (word == "window") {
        settings.window.isShown = value == "shown";
    } else if (word == "place") {
        settings.window.place = std::move(value);
    } else if (word == "presets") {
        settings.window.presetFolder = std::move(value);
    }
}

}  // namespace

SessionSettings readSettings(const std::filesystem::path& file) try {
    SessionSettings settings;
    const auto bytes = readRegularFile(file);
    std::istringstream lines(std::string(bytes.begin(), bytes.end()));
    for (std::string line; std::getline(lines, line);) {
        if (const auto blank = line.find(' '); blank != std::string::npos) {
            take(settings, std::string_view(line).substr(0, blank), line.substr(blank + 1));
        }
    }
    return settings;
} catch (const FileError&) {
    return {};
}

void writeSettings(const std::filesystem::path& file, const SessionSettings& settings) {
    Lines lines;
    for (const auto& source : settings.sources) {
        lines.add("source", source);
    }
    for (const auto& target : settings.targets) {
        lines.add("target", target);
    }
    lines.add("window", settings.window.isShown ? "shown" : "hidden");
    lines.add("place", settings.window.place);
    lines.add("presets", settings.window.presetFolder);
    writeWholeFile(file, lines.bytes(), Existing::replace);
}

}  // namespace quillo
