// SPDX-License-Identifier: GPL-3.0-or-later
// A host script: parsed and played, line by line, as `midi-quillo host` does it.
#include <sstream>
#include <string>

#include <nlohmann/json.hpp>

#include "FuzzInput.hpp"
#include "commandline/CommandFailure.hpp"
#include "programs/Commands.hpp"

using namespace quillo;
using fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::istringstream script(std::string(data, data + size));
    std::ostringstream out;
    std::ostringstream err;
    const auto status = runHostCommand(script, out, err);
    require(status == exitSuccess || status == exitBadData || status == exitFatal,
            "a script ends in one of three ways");
    require((status == exitBadData) == !err.str().empty(), "a bad line, and nothing else, is an error");
    std::istringstream answers(out.str());
    for (std::string line; std::getline(answers, line);) {
        require(nlohmann::json::accept(line), "each answer is a JSON object");
    }
    return 0;
}
