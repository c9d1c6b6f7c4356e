// SPDX-License-Identifier: GPL-3.0-or-later
// A file of another tool, read with either answer to what no line takes: what is read of it compiles, is
// written as a preset, and read as the same.
#include <string_view>

#include "FuzzInput.hpp"
#include "engine/RuleCompiler.hpp"
#include "otherformats/OtherFormat.hpp"
#include "persistence/PluginData.hpp"
#include "rules/RuleEntryIdentifiable.hpp"

using namespace quillo;
using fuzz::require;

namespace {

void take(std::string_view text, Unmatched unmatched) try {
    const auto taken = readOtherFormat(text, unmatched);
    constexpr std::uint32_t sampleRate = 48000;
    static_cast<void>(compileRules(taken.rules, sampleRate));
    require(!whyNotInEditor(taken.rules, taken.shelf), "the editor can hold the rules");
    const PluginData document{taken.rules, taken.shelf};
    require(PluginData::read(document.write()) == document, "the preset reads as the same");
    require(!takenText(taken).empty(), "it says what was taken");
} catch (const OtherFormatError&) {
    return;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    take(text, Unmatched::drop);
    take(text, Unmatched::pass);
    return 0;
}
