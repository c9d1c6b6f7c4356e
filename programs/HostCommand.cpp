// SPDX-License-Identifier: GPL-3.0-or-later
#include "programs/Commands.hpp"

#include <cstddef>
#include <istream>
#include <ostream>
#include <string>

#include <nlohmann/json.hpp>

#include "commandline/CommandFailure.hpp"
#include "persistence/DecodingError.hpp"
#include "platform/AtomicFile.hpp"
#include "platform/FatalError.hpp"
#include "platform/QuotedText.hpp"
#include "scriptedhost/ScriptAction.hpp"
#include "scriptedhost/ScriptedHost.hpp"

namespace quillo {

namespace {

bool isBlank(const std::string& line) {
    return line.find_first_not_of(" \t\r") == std::string::npos;
}

/// Room for the largest preset, as Base64 or with escapes.
constexpr std::size_t longestLine = 2 * usualSizeLimit;

/// The next line, without its end. Throws a `DecodingError` for one that has none.
std::string readLine(std::istream& script) {
    using Traits = std::istream::traits_type;
    std::string line;
    for (auto next = script.get(); next != Traits::eof() && next != '\n'; next = script.get()) {
        if (line.size() == longestLine) {
            throw DecodingError("longer than 128 MiB");
        }
        line.push_back(Traits::to_char_type(next));
    }
    return line;
}

/// Plays the script and counts its lines in `number`, so that an error can be reported with its line.
void play(std::istream& script, std::ostream& out, std::size_t& number) {
    ScriptedHost host(out);
    while (script.peek() != std::istream::traits_type::eof()) {
        ++number;
        const auto line = readLine(script);
        if (!isBlank(line)) {
            host.perform(parseScriptAction(line));
        }
    }
}

}  // namespace

int runHostCommand(std::istream& script, std::ostream& out, std::ostream& err) {
    std::size_t line = 0;
    try {
        play(script, out, line);
    } catch (const DecodingError& error) {
        err << "line " << line << ": " << escaped(error.what()) << '\n';
        return exitBadData;
    } catch (const FatalError& error) {
        out << escaped(nlohmann::json{{"fatal", error.what()}}.dump()) << '\n' << std::flush;
        return exitFatal;
    }
    if (script.bad()) {
        err << "the script cannot be read beyond line " << line << '\n';
        return exitNoInput;
    }
    return exitSuccess;
}

}  // namespace quillo
