// SPDX-License-Identifier: GPL-3.0-or-later
// Cycles of a JACK server: any bytes as the events of the input port.
//
// Of each cycle: frames (1 byte), how many messages the output takes (1), flags (1: rolling, 2: starting,
// 4: held and released before), the transport's frame (4), the number of events (1), and of each its offset
// (1), its length (2) and its bytes.
#include "FuzzInput.hpp"
#include "FuzzRules.hpp"
#include "hosts/jack/FakePorts.hpp"
#include "hosts/jack/ProcessCycle.hpp"
#include "midi/MessageLength.hpp"

using namespace quillo;
using fuzz::require;

namespace {

bool isOneMessage(const test::Bytes& bytes) {
    return isCompleteShortMessage(bytes) ||
           (bytes.size() >= 2 && bytes.front() == 0xF0 && bytes.back() == 0xF7);
}

test::FakeInput inputPort(fuzz::FuzzInput& input) {
    test::Timed events;
    for (auto left = input.number<std::uint8_t>(); left > 0 && !input.isEmpty(); --left) {
        const std::uint32_t offset = input.number<std::uint8_t>();
        events.emplace_back(offset, input.bytes(input.number<std::uint16_t>()));
    }
    return test::FakeInput(std::move(events));
}

void run(ProcessCycle& cycle, fuzz::FuzzInput& input) {
    const std::uint32_t frames = input.number<std::uint8_t>();
    test::FakeOutput out;
    out.mostMessages = input.number<std::uint8_t>();
    const auto flags = input.number<std::uint8_t>();
    if ((flags & 4U) != 0) {
        cycle.hold();
        cycle.release();
    }
    const ServerTransport transport{.isRolling = (flags & 1U) != 0,
                                    .frame = input.number<std::uint32_t>(),
                                    .clock = 0,
                                    .isStarting = (flags & 2U) != 0};
    cycle.run(frames, transport, inputPort(input), out);
    std::uint32_t last = 0;
    for (const auto& [offset, bytes] : out.written) {
        require(offset >= last && offset <= std::max(frames, 1U) - 1,
                "what is sent lies in its cycle, in order");
        require(isOneMessage(bytes), "what is sent is one message");
        last = offset;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::FuzzInput input(data, size);
    RuleProcessor processor;
    processor.sampleRate = 8000;
    processor.setRules(fuzz::fuzzRules());
    const LogCallback noLog;
    BlockRenderer renderer(processor, noLog, noLog, HostTransport());
    ProcessCycle cycle(renderer);
    cycle.release();
    while (!input.isEmpty()) {
        run(cycle, input);
    }
    return 0;
}
