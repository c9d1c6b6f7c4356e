// SPDX-License-Identifier: GPL-3.0-or-later
#include "rules/MIDIVocabulary.hpp"

#include <gtest/gtest.h>

#include <set>

#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;

template <class Value>
std::vector<std::string> labels(const Menu<Value>& menu) {
    std::vector<std::string> labels;
    for (const auto& item : menu) {
        labels.push_back(item.label);
    }
    return labels;
}

TEST(MIDIVocabulary, EveryControllerHasItsRowInAscendingOrder) {
    const auto& menu = controllerMenu();
    ASSERT_EQ(menu.size(), 128U);
    for (std::size_t row = 0; row < menu.size(); ++row) {
        EXPECT_EQ(menu[row].value, row);
        EXPECT_TRUE(menu[row].label.starts_with(std::to_string(row) + " : "));
    }
}

TEST(MIDIVocabulary, ControllersHaveTheirNames) {
    const auto& menu = controllerMenu();
    EXPECT_EQ(menu[0].label, "0 : Bank MSB");
    EXPECT_EQ(menu[7].label, "7 : Volume");
    EXPECT_EQ(menu[19].label, "19 : General Slider #4");
    EXPECT_EQ(menu[45].label, "45 : Effect #2 LSB");
    EXPECT_EQ(menu[64].label, "64 : Sustain");
    EXPECT_EQ(menu[79].label, "79 : SoundControl #10");
    EXPECT_EQ(menu[94].label, "94 : Celetste Detune Depth");
    EXPECT_EQ(menu[101].label, "101 : Reg.Par. MSB");
    EXPECT_EQ(menu[127].label, "127 : Poly Mode On");
}

TEST(MIDIVocabulary, ExactlyTheReservedControllersAreCalledSo) {
    std::set<int> reserved{3, 9, 14, 15, 35, 41};
    for (const auto& [first, last] : {std::pair{20, 31}, {46, 63}, {84, 90}, {102, 119}}) {
        for (int controller = first; controller <= last; ++controller) {
            reserved.insert(controller);
        }
    }
    for (int controller = 0; controller < 128; ++controller) {
        EXPECT_EQ(controllerName(static_cast<std::uint8_t>(controller)) == "Reserved",
                  reserved.contains(controller))
            << controller;
    }
}

TEST(MIDIVocabulary, NotesAreCountedFromTheOctaveMinusTwo) {
    EXPECT_EQ(noteLabel(0), "0 (C-2)");
    EXPECT_EQ(noteLabel(11), "11 (B-2)");
    EXPECT_EQ(noteLabel(12), "12 (C-1)");
    EXPECT_EQ(noteLabel(60), "60 (C3)");
    EXPECT_EQ(noteLabel(61), "61 (C\u266F3)");
    EXPECT_EQ(noteLabel(70), "70 (A\u266F3)");
    EXPECT_EQ(noteLabel(127), "127 (G8)");
}

TEST(MIDIVocabulary, TheNoteMenuBeginsWithAnyAndDescends) {
    const auto& menu = triggerNoteMenu();
    ASSERT_EQ(menu.size(), 129U);
    EXPECT_EQ(menu[0], (MenuItem<TriggerValueV2>{any, "Any"}));
    EXPECT_EQ(menu[1], (MenuItem<TriggerValueV2>{exactly(127), "127 (G8)"}));
    EXPECT_EQ(menu[128], (MenuItem<TriggerValueV2>{exactly(0), "0 (C-2)"}));
    for (std::size_t row = 1; row < menu.size(); ++row) {
        EXPECT_EQ(menu[row].value, exactly(static_cast<std::uint8_t>(128 - row)));
    }
}

TEST(MIDIVocabulary, ChannelsAreShownFromOne) {
    const auto& menu = triggerChannelMenu();
    ASSERT_EQ(menu.size(), 17U);
    EXPECT_EQ(menu[0], (MenuItem<TriggerValueV2>{any, "Any"}));
    EXPECT_EQ(menu[10], (MenuItem<TriggerValueV2>{exactly(9), "10"}));
    EXPECT_EQ(menu[16], (MenuItem<TriggerValueV2>{exactly(15), "16"}));
}

TEST(MIDIVocabulary, TheOutputMenuHasItsRowsInOrder) {
    EXPECT_EQ(labels(outputTypeMenu()),
              (std::vector<std::string>{"Note On", "Note Off", "CC", "Program Change", "Channel Pressure",
                                        "Pitch Wheel", "SysEx", "All Sound Off", "All Notes Off"}));
    EXPECT_EQ(outputTypeMenu()[7].value, MIDIRuleType(MIDIRuleType::ControlChangeShortCut{120}));
    EXPECT_EQ(outputTypeMenu()[8].value, MIDIRuleType(MIDIRuleType::ControlChangeShortCut{123}));
}

TEST(MIDIVocabulary, TheTriggerMenuHasTheHostsTransportBeforeMIDIs) {
    EXPECT_EQ(labels(triggerTypeMenu()),
              (std::vector<std::string>{"On Load", "Note On", "Note Off", "CC", "Program Change",
                                        "AU Host Transport Start", "AU Host Transport Continue",
                                        "AU Host Transport Stop", "MIDI Transport Start",
                                        "MIDI Transport Continue", "MIDI Transport Stop"}));
    EXPECT_EQ(triggerTypeMenu()[5].value, TriggerEntryType::HostStart);
    EXPECT_EQ(triggerTypeMenu()[9].value, TriggerEntryType::MIDIContinue);
}

TEST(MIDIVocabulary, ThePolicyMenuHasItsRowsInOrder) {
    EXPECT_EQ(passThroughMenu(),
              (Menu<PassThroughV2>{{PassThroughV2::PassThrough, "Pass through"},
                                   {PassThroughV2::EatMatching, "Consume matching"},
                                   {PassThroughV2::EatNonMatching, "Consume non-matching"}}));
}

TEST(MIDIVocabulary, EachListIsMadeOnce) {
    EXPECT_EQ(&controllerMenu(), &controllerMenu());
    EXPECT_EQ(&triggerNoteMenu(), &triggerNoteMenu());
}

}  // namespace
}  // namespace quillo
