// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/PresetTest.hpp"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <utility>

#include "analysis/AskedEvent.hpp"
#include "platform/InStableOrder.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

namespace {

using Step = PresetTest::Step;

constexpr std::string_view arrow = "\u2192";
constexpr std::string_view plainArrow = "->";
constexpr std::string_view byteOrderMark = "\uFEFF";
constexpr std::string_view blanks = " \t\r";

std::string_view trimmed(std::string_view text) {
    const auto first = std::min(text.find_first_not_of(blanks), text.size());
    const auto last = text.find_last_not_of(blanks);
    return text.substr(first, last == std::string_view::npos ? 0 : last + 1 - first);
}

/// The text before `separator`, which `text` loses with it; all of it without one.
std::string_view takeBefore(std::string_view& text, std::string_view separator) {
    const auto end = std::min(text.find(separator), text.size());
    const auto before = text.substr(0, end);
    text.remove_prefix(std::min(end + separator.size(), text.size()));
    return trimmed(before);
}

/// "at 300 ms: 91 3c 64": a time in milliseconds, and what stands behind it.
struct Timed {
    SampleTime time;
    std::string_view rest;
};

/// Reads a test line by line.
class Reader {
public:
    PresetTest read(std::string_view text) {
        if (text.starts_with(byteOrderMark)) {
            text.remove_prefix(byteOrderMark.size());
        }
        while (!text.empty()) {
            ++line_;
            readLine(takeBefore(text, "\n"));
        }
        return {inOrder()};
    }

private:
    void readLine(std::string_view line) {
        if (line.empty() || line.front() == '#') {
            return;
        }
        const auto used = line.find(arrow) == std::string_view::npos ? plainArrow : arrow;
        const bool hasArrow = line.find(used) != std::string_view::npos;
        if (const auto event = takeBefore(line, used); !event.empty()) {
            steps_.push_back({readEvent(event), line_, {}});
        } else if (steps_.empty()) {
            fail("nothing has come in yet that this could be the answer to");
        }
        if (hasArrow) {
            readAllWanted(trimmed(line));
        }
    }

    TimedEvent readEvent(std::string_view text) {
        if (text == "on load") {
            return {0, PluginLoad{}};
        }
        const auto [time, rest] = readTimed(text);
        const auto event = parsed(rest, &parseAskedEvent);
        if (time != 0 && std::holds_alternative<PluginLoad>(event)) {
            fail("loading is the first that happens: write \"on load\"");
        }
        return {time, event};
    }

    void readAllWanted(std::string_view text) {
        if (text.empty()) {
            fail("behind an arrow stands what leaves, or \"nothing\"");
        }
        while (!text.empty() && text != "nothing") {
            const auto [time, rest] = readTimed(takeBefore(text, ","));
            const auto bytes = parsed(rest, &parseBytes);
            steps_.back().wanted.push_back({time, MIDIMessage::copyOf(bytes), line_});
        }
    }

    [[nodiscard]] Timed readTimed(std::string_view text) const {
        auto rest = text;
        const auto time = takeBefore(rest, ":");
        SampleTime milliseconds = 0;
        const std::string digits(time.starts_with("at ") ? trimmed(time.substr(3)) : "");
        const auto* const end = digits.data() + digits.size();
        const auto [stop, error] = std::from_chars(digits.data(), end, milliseconds);
        if (error != std::errc{} || milliseconds < 0 || trimmed({stop, end}) != "ms") {
            fail(inQuotes(text) + " does not begin with a time in whole milliseconds, as \"at 300 ms:\" is");
        }
        return {milliseconds, trimmed(rest)};
    }

    template <class Result>
    [[nodiscard]] Result parsed(std::string_view text, Result (*parse)(std::string_view)) const {
        try {
            return parse(text);
        } catch (const AskedEventError& error) {
            fail(inQuotes(text) + ": " + error.what());
        }
    }

    [[noreturn]] void fail(const std::string& what) const { throw PresetTestError(line_, what); }

    /// With loading at the beginning, once.
    std::vector<Step> inOrder() {
        const auto isLoading = [](const Step& step) {
            return std::holds_alternative<PluginLoad>(step.event.event);
        };
        std::vector<Step> loading(1, {{0, PluginLoad{}}, 0, {}});
        for (auto& step :
             inStableOrder(std::move(steps_), [](const Step& each) { return each.event.time; })) {
            if (isLoading(step)) {
                loading.front().line = step.line;
                std::ranges::move(step.wanted, std::back_inserter(loading.front().wanted));
            } else {
                loading.push_back(std::move(step));
            }
        }
        return loading;
    }

    std::size_t line_ = 0;
    std::vector<Step> steps_;
};

}  // namespace

PresetTest PresetTest::read(std::string_view text) {
    return Reader().read(text);
}

}  // namespace quillo
