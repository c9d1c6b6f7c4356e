// SPDX-License-Identifier: GPL-3.0-or-later
#include "programs/editor/Desk.hpp"

#include <utility>

namespace quillo {

namespace {

/// Takes every message, and keeps none.
class Nowhere final : public HostOutput {
public:
    [[nodiscard]] Room roomFor(Bytes /*bytes*/, const Waiting& /*waiting*/) const QUILLO_REALTIME override {
        return Room::enough;
    }
    void write(std::uint32_t /*offset*/, std::span<const std::uint8_t> /*bytes*/) QUILLO_REALTIME override {}
};

EditorUnit& withRules(EditorUnit& unit, std::vector<Rule> rules) {
    unit.onRulesChanged(std::move(rules));
    return unit;
}

}  // namespace

Desk::Desk(std::vector<Rule> rules) : shell_(withRules(session_, std::move(rules))) {}

void Desk::render(std::uint32_t frames, const std::vector<std::vector<std::uint8_t>>& messages) {
    auto& renderer = session_.renderer();
    Nowhere output;
    renderer.begin(frames, output);
    for (const auto& message : messages) {
        renderer.receive(0, message);
    }
    if (renderer.end() != noErr) {
        session_.processor().fatalErrors.raise();
    }
}

}  // namespace quillo
