// SPDX-License-Identifier: GPL-3.0-or-later
#include "benchmarks/BenchmarkRules.hpp"

#include <string>

#include "support/TestRules.hpp"

namespace quillo::bench {

namespace {

/// A remainder small enough for a data byte.
std::uint8_t wrapped(std::size_t number, std::size_t limit) {
    return static_cast<std::uint8_t>(number % limit);
}

Rule ruleForNote(std::uint8_t onChannel, std::uint8_t note) {
    return test::rule(test::onNoteOn(test::exactly(note), test::exactly(onChannel)),
                      test::send(test::noteOn(0, note, 100)));
}

Rule mixedRule(std::size_t number) {
    const auto byte = wrapped(number, 128);
    const auto onChannel = test::exactly(wrapped(number / 128, 16));
    auto name = "Rule number " + std::to_string(number);
    switch (number % 4) {
    case 0:
        return test::rule(test::onNoteOn(test::exactly(byte), onChannel),
                          test::send(test::noteOn(1, byte, 100), 20), std::move(name));
    case 1:
        return test::rule(test::onControlChange(byte, test::any, onChannel),
                          test::send(test::protocol(StatusV2::CC, test::triggerChannel, test::byte(byte),
                                                    test::triggerByte)),
                          std::move(name));
    case 2:
        return test::rule(test::onProgramChange(test::exactly(byte), onChannel),
                          test::send(test::programChange(test::channel(2), 1, test::triggerByte)),
                          std::move(name));
    default:
        return test::rule(test::onNoteOff(test::exactly(byte), onChannel),
                          test::send(test::systemExclusive(std::vector<std::uint8_t>(16, byte)), 5),
                          std::move(name));
    }
}

}  // namespace

std::vector<Rule> rulesThatMatchNothing(std::size_t count) {
    std::vector<Rule> rules;
    rules.reserve(count);
    for (std::size_t number = 0; number < count; ++number) {
        rules.push_back(ruleForNote(wrapped(number / 128, eventChannel), wrapped(number, 128)));
    }
    return rules;
}

std::vector<Rule> rulesOfWhichTheMiddleMatches(std::size_t count) {
    auto rules = rulesThatMatchNothing(count);
    rules[count / 2] = ruleForNote(eventChannel, middleNote);
    return rules;
}

std::vector<Rule> wildcardRules(std::size_t count, PassThroughV2 policy) {
    const auto trigger = test::onNoteOn(test::any, test::any, policy);
    return std::vector(count, test::rule(trigger, test::send(test::noteOn(0, 60, 100))));
}

std::vector<Rule> rulesOfOneController(std::size_t count) {
    std::vector<Rule> rules;
    rules.reserve(count);
    for (std::size_t number = 0; number < count; ++number) {
        const auto value = test::exactly(wrapped(number, otherValue));
        rules.push_back(test::rule(test::onControlChange(sharedController, value),
                                   test::send(test::controlChange(0, 7, 100))));
    }
    return rules;
}

std::vector<Rule> wildcardAndSingleRules(std::size_t wildcards, std::size_t singles) {
    auto rules = wildcardRules(wildcards, PassThroughV2::PassThrough);
    for (std::size_t number = 0; number < singles; ++number) {
        const auto position = static_cast<std::ptrdiff_t>(number * wildcards / singles);
        rules.insert(rules.begin() + position, ruleForNote(wrapped(number / 128, 16), wrapped(number, 128)));
    }
    return rules;
}

std::vector<Rule> rulesOfEveryController(std::size_t count) {
    std::vector<Rule> rules;
    rules.reserve(count);
    for (std::size_t number = 0; number < count; ++number) {
        const auto trigger =
            test::onControlChange(wrapped(number, 128), test::exactly(wrapped(number / 2048, 128)),
                                  test::exactly(wrapped(number / 128, 16)));
        rules.push_back(test::rule(trigger, test::send(test::controlChange(0, 7, 100))));
    }
    return rules;
}

std::vector<Rule> mixedRules(std::size_t count) {
    std::vector<Rule> rules;
    rules.reserve(count);
    for (std::size_t number = 0; number < count; ++number) {
        rules.push_back(mixedRule(number));
    }
    return rules;
}

}  // namespace quillo::bench
