// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/cli/HostCommand.hpp"

#include <cstddef>
#include <istream>
#include <ostream>
#include <string>

#include <nlohmann/json.hpp>

#include "hosts/cli/ExitStatus.hpp"
#include "hosts/cli/ScriptActionParser.hpp"
#include "hosts/cli/ScriptedHost.hpp"
#include "persistence/DecodingError.hpp"
#include "platform/FatalError.hpp"

namespace quillo {

namespace {

bool isBlank(const std::string& line) {
    return line.find_first_not_of(" \t\r") == std::string::npos;
}

/// Plays the script and counts its lines in `number`, so that an error can be told with its line.
void play(std::istream& script, std::ostream& out, std::size_t& number) {
    ScriptedHost host(out);
    for (std::string line; std::getline(script, line);) {
        ++number;
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
        err << "line " << line << ": " << error.what() << '\n';
        return exitBadData;
    } catch (const FatalError& error) {
        out << nlohmann::json{{"fatal", error.what()}}.dump() << '\n' << std::flush;
        return exitFatal;
    }
    if (script.bad()) {
        err << "the script cannot be read beyond line " << line << '\n';
        return exitNoInput;
    }
    return exitSuccess;
}

}  // namespace quillo
