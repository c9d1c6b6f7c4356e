// SPDX-License-Identifier: GPL-3.0-or-later
#include "persistence/PluginData.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "persistence/DecodingError.hpp"
#include "persistence/Documents.hpp"
#include "persistence/JSONReader.hpp"
#include "persistence/PluginDataV3.hpp"
#include "persistence/RuleDescriptions.hpp"
#include "platform/FatalError.hpp"

namespace quillo {

/// What a program reads that was made before there was a shelf.
struct RulesAlone {
    std::vector<Rule> rules;
};

template <>
struct Description<RulesAlone> {
    static constexpr std::tuple fields{field("rules", &RulesAlone::rules)};
};

namespace {

using documents::bytesOf;
using documents::errorOf;
using documents::read;
using documents::written;

PluginData exampleData() {
    return {{documents::noteToControllerRule(), documents::loadSoundRule()}};
}

Rule named(std::string name) {
    auto rule = documents::loadSoundRule();
    rule.name = std::move(name);
    return rule;
}

std::string mostUsefulErrorOf(std::string_view text) {
    try {
        static_cast<void>(read(text));
    } catch (const DecodingError& error) {
        return error.mostUseful();
    }
    return "read without an error";
}

std::string rulesOf(const std::string& elements) {
    return R"({"rules":[)" + elements + "]}";
}

std::string replaced(std::string text, std::string_view from, std::string_view to) {
    const auto start = text.find(from);
    EXPECT_NE(start, std::string::npos) << from;
    return text.replace(start, from.size(), to);
}

TEST(DecodingErrorOfBothReadings, SaysWhatTheOneSaysThatCameFurtherOrElseTheOther) {
    const auto useful = [](std::size_t deciding, std::size_t other) {
        return DecodingError::ofBothReadings(DecodingError("deciding", deciding), "another form",
                                             DecodingError("other", other))
            .mostUseful();
    };
    EXPECT_EQ(useful(3, 2), "deciding");
    EXPECT_EQ(useful(2, 2), "other");
    EXPECT_EQ(useful(2, 3), "other");
}

TEST(PluginData, WritesARuleByteForByte) {
    const auto text = written({{documents::loadSoundRule()}});
    const std::string rule =
        R"({"output":{"message":{"ProgramChange":{"_0":{"Value":{"_0":0}},"_1":0,"_2":{"Value":{"_0":5}}}},)"
        R"("delay":{"ms":0}},"trigger":{"OnLoad":{}},"name":"Load sound"})";
    EXPECT_EQ(rule.size(), 158U);
    EXPECT_EQ(text, R"({"rules":[)" + rule + "]}");
}

TEST(PluginData, WritesADocumentByteForByte) {
    EXPECT_EQ(
        written(exampleData()),
        R"({"rules":[)"
        R"({"output":{"message":{"Protocol":{"_0":{"WithChannel":{"_0":176,"_1":{"TriggerChannel":{}}}},)"
        R"("_1":{"Value":{"_0":7}},"_2":{"RespectiveTriggerByte":{}}}},"delay":{"ms":250}},"trigger":)"
        R"({"MessageBased":{"_0":{"variants":{"VoiceCategory":{"_0":{"variants":{"NoteOn":{"_0":{"AnyValue":)"
        R"({}}}},"channel":{"AnyValue":{}}}}},"passTrough":{"PassThrough":{}}}}},"name":"Note to CC"},)"
        R"({"output":{"message":{"ProgramChange":{"_0":{"Value":{"_0":0}},"_1":0,"_2":{"Value":{"_0":5}}}},)"
        R"("delay":{"ms":0}},"trigger":{"OnLoad":{}},"name":"Load sound"})"
        R"(]})");
}

TEST(PluginData, WritesAnEmptyListInTwelveBytes) {
    EXPECT_EQ(written({}), R"({"rules":[]})");
    EXPECT_EQ(PluginData().write().size(), 12U);
    EXPECT_EQ(read(written({})), PluginData());
}

TEST(PluginData, LeavesAnAbsentThirdByteOut) {
    auto rule = documents::loadSoundRule();
    rule.output.message = RuleOutputVariantsV2::Protocol{StatusByteV2::JustStatus{StatusV2::channelPressure},
                                                         GenericByteV2::Value{1}, std::nullopt};
    EXPECT_EQ(written({{rule}}),
              R"({"rules":[{"output":{"message":{"Protocol":{"_0":{"JustStatus":{"_0":208}},"_1":{"Value":)"
              R"({"_0":1}}}},"delay":{"ms":0}},"trigger":{"OnLoad":{}},"name":"Load sound"}]})");
}

TEST(PluginData, EscapesASlashInANameAndReadsItBack) {
    const PluginData data{{named("in/out \"♪\" \n")}};
    EXPECT_NE(written(data).find(R"("name":"in\/out \"♪\" \n"})"), std::string::npos);
    EXPECT_EQ(read(written(data)), data);
}

TEST(PluginData, ReadsBackWhatItWrites) {
    EXPECT_EQ(read(written(exampleData())), exampleData());
    EXPECT_EQ(read(documents::currentDocument()), exampleData());
}

TEST(PluginData, HasNoDocumentForANameThatIsNotUTF8) {
    EXPECT_THROW(static_cast<void>(PluginData{{named("\xFF")}}.write()), EncodingError);
}

TEST(PluginData, ReadsAnyKeyOrderAndWhitespace) {
    EXPECT_EQ(read(" {\n\t\"other\" : [ 1 ] ,\r\n \"rules\" : [ { \"name\" : "
                   "\"Load sound\" , \"x\" : null ,"
                   " \"trigger\" : { \"OnLoad\" : { \"y\" : 1 } } , \"output\" : "
                   "{ \"delay\" : { \"ms\" : 0 } ,"
                   " \"message\" : { \"ProgramChange\" : { \"_2\" : { \"Value\" "
                   ": { \"_0\" : 5 } } ,"
                   " \"_1\" : 0 , \"_0\" : { \"Value\" : { \"_0\" : 0 } } } } } "
                   "} ] } \n"),
              (PluginData{{documents::loadSoundRule()}}));
}

TEST(PluginData, ReadsEscapedNames) {
    const auto text =
        replaced(rulesOf(std::string(documents::loadSound)), "Load sound", R"(\u00e9\/\ud83c\udfb9\u0000)");
    using std::string_literals::operator""s;
    EXPECT_EQ(read(text).rules[0].name, "é/🎹\0"s);
}

TEST(PluginData, ReadsADocumentBehindAByteOrderMark) {
    EXPECT_EQ(read("\xEF\xBB\xBF" + documents::currentDocument()), exampleData());
}

TEST(PluginData, TakesTheLastOfEqualKeys) {
    EXPECT_EQ(read(R"({"rules":7,"rules":[]})"), PluginData());
}

TEST(PluginData, ReadsABareEmptyArray) {
    EXPECT_EQ(read("[]"), PluginData());
}

TEST(PluginData, NamesTheRulesOfABareArrayByPosition) {
    const auto rules = read(documents::bareArrayV2).rules;
    ASSERT_EQ(rules.size(), 3U);
    EXPECT_EQ(rules[0].name, "Message #1");
    EXPECT_EQ(rules[1].name, "Message #2");
    EXPECT_EQ(rules[2].name, "Message #3");
}

TEST(PluginData, CountsNamesBeyondNineWithoutLeadingZeros) {
    std::string text = "[";
    for (int rule = 0; rule < 12; ++rule) {
        text += (rule == 0 ? "" : ",") + std::string(documents::loadSound);
    }
    const auto rules = read(text + "]").rules;
    ASSERT_EQ(rules.size(), 12U);
    EXPECT_EQ(rules[9].name, "Message #10");
    EXPECT_EQ(rules[11].name, "Message #12");
}

Rule systemExclusiveOnLoad() {
    return {{RuleOutputVariantsV2::SystemExclusive{{126, 127, 9, 1}}, DelayV2{0}},
            RuleTriggerV2::OnLoad{},
            "Message #1"};
}

Rule pressureOnStop() {
    return {{RuleOutputVariantsV2::Protocol{StatusByteV2::JustStatus{StatusV2::channelPressure},
                                            GenericByteV2::Value{64}, std::nullopt},
             DelayV2{5}},
            RuleTriggerV2::HostTransport{{HostTransportTriggerVariantsV2::Stop, PassThroughV2::EatMatching}},
            "Message #2"};
}

Rule bankOnProgramChange() {
    return {{RuleOutputVariantsV2::ProgramChange{RuleOutputChannelV2::TriggerChannel{}, 2,
                                                 GenericByteV2::RespectiveTriggerByte{}},
             DelayV2{1000}},
            RuleTriggerV2::MessageBased{
                {MessageBasedTriggerVariantsV2::VoiceCategory{
                     {VoiceCategoryTriggerVariantsV2::ProgramChange{TriggerValueV2::Value{3}},
                      TriggerValueV2::Value{15}}},
                 PassThroughV2::EatNonMatching}},
            "Message #3"};
}

TEST(PluginData, UpgradesABareArrayOfTheSecondForm) {
    EXPECT_THAT(read(documents::bareArrayV2).rules,
                testing::ElementsAre(systemExclusiveOnLoad(), pressureOnStop(), bankOnProgramChange()));
}

TEST(PluginData, UpgradesABareArrayOfTheOldestForm) {
    EXPECT_EQ(read("[" + std::string(documents::noteRuleV1) + "]"),
              (PluginData{{documents::noteRuleV1Migrated("Message #1")}}));
}

TEST(PluginData, UpgradesABareArrayOfBothOlderForms) {
    const auto document =
        "[" + std::string(documents::loadSound) + "," + std::string(documents::noteRuleV1) + "]";
    EXPECT_EQ(read(document),
              (PluginData{{named("Message #1"), documents::noteRuleV1Migrated("Message #2")}}));
}

TEST(PluginData, GivesANameInABareArrayUp) {
    EXPECT_EQ(read("[" + std::string(documents::noteToController) + "]").rules[0].name, "Message #1");
}

TEST(PluginData, ReadsNoOldRulesInsideACurrentDocument) {
    EXPECT_EQ(mostUsefulErrorOf(rulesOf(std::string(documents::noteRuleV1))),
              "Invalid number of keys found, expected one. "
              R"(rules[0].output.message: expected "Protocol" or "ProgramChange" or "SystemExclusive")");
}

TEST(PluginData, RequiresTheNameOfARule) {
    EXPECT_EQ(errorOf(R"({"rules":[{"output":{"message":{"SystemExclusive":{"_0":[]}},"delay":{"ms":0}},)"
                      R"("trigger":{"OnLoad":{}}}]})"),
              "expected an array, found an object; read as a current document: "
              R"(rules[0]: missing key "name")");
}

TEST(PluginData, FailsWholeWithOneMalformedRule) {
    const auto document = replaced(documents::currentDocument(), R"("passTrough":)", R"("passThrough":)");
    EXPECT_EQ(errorOf(document), "expected an array, found an object; read as a current document: "
                                 R"(rules[0].trigger.MessageBased: missing key "passTrough")");
    EXPECT_EQ(mostUsefulErrorOf(document), R"(rules[0].trigger.MessageBased: missing key "passTrough")");
}

TEST(PluginData, RequiresTheWholeWordPassThroughInATransportTrigger) {
    const auto document =
        replaced(std::string(documents::bareArrayV2), R"("passThrough":)", R"("passTrough":)");
    EXPECT_EQ(mostUsefulErrorOf(document), R"([1].trigger.HostTransport: missing key "passThrough")");
}

TEST(PluginData, AByteFieldOf300FailsTheDocument) {
    const auto document = replaced(documents::currentDocument(), R"({"_0":5})", R"({"_0":300})");
    EXPECT_EQ(errorOf(document), "expected an array, found an object; read as a current document: "
                                 "rules[1].output.message.ProgramChange._2.Value: expected a whole "
                                 "number from 0 to 255, found 300");
}

TEST(PluginData, AnUnknownStatusNumberFailsTheDocument) {
    const auto document = replaced(documents::currentDocument(), R"("_0":176)", R"("_0":160)");
    EXPECT_EQ(mostUsefulErrorOf(document), "rules[0].output.message.Protocol._0.WithChannel._0: "
                                           "expected one of 144, 128, 176, 192, 208, 224, found 160");
}

TEST(PluginData, SaysWhatTheTopLevelLacks) {
    EXPECT_EQ(errorOf("{}"),
              R"(expected an array, found an object; read as a current document: missing key "rules")");
    EXPECT_EQ(errorOf(R"({"rules":{}})"), "expected an array, found an object; read as a current document: "
                                          "rules: expected an array, found an object");
    EXPECT_EQ(errorOf("7"), "expected an array, found 7; read as a current "
                            "document: expected an object, found 7");
    EXPECT_EQ(mostUsefulErrorOf("null"), "expected an object, found null");
}

TEST(PluginData, DecidesByTheOldestFormWhenAnElementReadsInNone) {
    EXPECT_EQ(
        errorOf(R"([{"output":{"message":{},"delay":{"ms":0}},"trigger":{"OnLoad":{}}}])"),
        R"(Invalid number of keys found, expected one. [0].output.message: expected "Prime" or "Shortcut"; )"
        "read as a V2 rule: Invalid number of keys found, expected one. "
        R"([0].output.message: expected "Protocol" or "ProgramChange" or "SystemExclusive")");
}

TEST(PluginData, ReportsOnceWhatBothOlderFormsLack) {
    EXPECT_EQ(errorOf("[7]"), "[0]: expected an object, found 7");
    EXPECT_EQ(errorOf(R"([{"trigger":{"OnLoad":{}}}])"), R"([0]: missing key "output")");
}

TEST(PluginData, FindsTheErrorOfTheFormThatARuleIsIn) {
    const auto newer = replaced(std::string(documents::bareArrayV2), R"("passTrough":)", R"("passThrough":)");
    EXPECT_EQ(mostUsefulErrorOf(newer), R"([2].trigger.MessageBased: missing key "passTrough")");

    const auto oldest = "[" + std::string(documents::noteRuleV1) + "]";
    EXPECT_EQ(mostUsefulErrorOf(replaced(oldest, R"("passTrough":)", R"("passThrough":)")),
              R"([0].trigger.MessageBased: missing key "passTrough")");
    EXPECT_EQ(mostUsefulErrorOf(replaced(oldest, R"("value": 100)", R"("value": 256)")),
              "[0].output.message.Prime.NoteOn._2.value: expected a whole number from "
              "0 to 255, found 256");
    EXPECT_EQ(mostUsefulErrorOf(replaced(oldest, R"("ms": 10)", R"("ms": 0.5)")),
              "[0].output.delay.ms: expected a whole number from "
              "-9223372036854775808 to "
              "9223372036854775807, found 0.5");
}

TEST(PluginData, ReportsASyntaxErrorOnce) {
    const std::string text = R"({"rules":[)";
    EXPECT_EQ(errorOf(text), "not JSON: column 11: unexpected end of input");
    EXPECT_EQ(mostUsefulErrorOf(text), errorOf(text));
}

TEST(PluginData, AnOldPitchAbove255IsFatal) {
    constexpr std::string_view pitched =
        R"([{"output":{"message":{"Prime":{"_0":{"PitchWheel":{"_0":{"value":0},"_1":{"value":256}}}}},)"
        R"("delay":{"ms":0}},"trigger":{"OnLoad":{}}}])";
    EXPECT_THROW(read(pitched), FatalError);
    EXPECT_EQ(mostUsefulErrorOf(replaced(std::string(pitched), "256", "65536")),
              "[0].output.message.Prime.PitchWheel._1.value: "
              "expected a whole number from 0 to 65535, found 65536");
}

TEST(PluginData, EveryTruncationFails) {
    const auto document = documents::currentDocument();
    for (std::size_t length = 0; length < document.size(); ++length) {
        EXPECT_TRUE(errorOf(document.substr(0, length)).starts_with("not JSON: column ")) << length;
    }
}

TEST(PluginData, IgnoresAHundredThousandUnknownKeys) {
    std::string unknown;
    for (int key = 0; key < 100'000; ++key) {
        unknown += "\"key" + std::to_string(key) + "\":0,";
    }
    EXPECT_EQ(read("{" + unknown + R"("rules":[]})"), PluginData());
    EXPECT_EQ(mostUsefulErrorOf("{" + unknown + R"("rule":[]})"), R"(missing key "rules")");
}

TEST(PluginData, ReadsAHundredThousandRules) {
    std::string elements(documents::loadSound);
    for (int rule = 1; rule < 100'000; ++rule) {
        elements += "," + std::string(documents::loadSound);
    }
    EXPECT_EQ(read(rulesOf(elements)).rules.size(), 100'000U);
}

TEST(ReadDocument, TellsTheForm) {
    const auto current = readDocument(bytesOf(documents::currentDocument()));
    EXPECT_EQ(current.form, ReadDocument::Form::current);
    EXPECT_EQ(current.migratedRules, 0U);
    EXPECT_EQ(current.data, exampleData());

    const auto second = readDocument(bytesOf(documents::bareArrayV2));
    EXPECT_EQ(second.form, ReadDocument::Form::bareArray);
    EXPECT_EQ(second.migratedRules, 0U);
}

TEST(ReadDocument, CountsTheRulesOfTheOldestForm) {
    const std::string oldest(documents::noteRuleV1);
    const auto mixed = "[" + oldest + "," + std::string(documents::loadSound) + "," + oldest + "]";
    const auto document = readDocument(bytesOf(mixed));
    EXPECT_EQ(document.form, ReadDocument::Form::bareArray);
    EXPECT_EQ(document.migratedRules, 2U);
    EXPECT_EQ(document.data.rules.size(), 3U);
}

TEST(PluginData, EqualListsHaveEqualHashesAndAnyDifferenceAnother) {
    const std::hash<PluginData> hash;
    EXPECT_EQ(hash(exampleData()), hash(read(documents::currentDocument())));
    EXPECT_NE(hash({{named("a")}}), hash({{named("b")}}));
    EXPECT_NE(hash({{named("a"), named("b")}}), hash({{named("b"), named("a")}}));
    EXPECT_EQ(std::hash<PluginDataV3>()({{named("a")}}), std::hash<PluginDataV3>()({{named("a")}}));
    EXPECT_NE(std::hash<PluginDataV3>()({{named("a")}}), std::hash<PluginDataV3>()({}));
}

TEST(PluginData, IsEqualByItsRules) {
    EXPECT_EQ(exampleData(), exampleData());
    EXPECT_NE(exampleData(), PluginData());
    EXPECT_NE((PluginData{{named("a")}}), (PluginData{{named("b")}}));
}

TEST(PluginData, WritesRulesThatAreSwitchedOffBehindTheOthersByteForByte) {
    EXPECT_EQ(written(documents::dataWithShelf()), documents::documentWithShelf());
    EXPECT_EQ(read(documents::documentWithShelf()), documents::dataWithShelf());
}

TEST(PluginData, WithoutItsShelfADocumentIsByteForByteThatOfTheRulesThatRun) {
    auto text = documents::documentWithShelf();
    const auto start = text.find(R"(,"shelf":)");
    text.erase(start, text.size() - 1 - start);
    EXPECT_EQ(text, documents::currentDocument());
    EXPECT_EQ(written({documents::dataWithShelf().rules}), text);
}

TEST(PluginData, AReaderThatKnowsNoShelfReadsTheSameRules) {
    EXPECT_EQ(JSONReader().read<RulesAlone>(parseJSON(bytesOf(documents::documentWithShelf())), {}).rules,
              documents::dataWithShelf().rules);
}

TEST(PluginData, AnEmptyShelfIsTheSameAsNoShelf) {
    for (const auto* shelf : {"[]", "null"}) {
        const auto data = read(R"({"rules":[],"shelf":)" + std::string(shelf) + "}");
        EXPECT_EQ(data, PluginData());
        EXPECT_EQ(written(data), R"({"rules":[]})");
    }
}

/// A document of two rules with these on the shelf, each an empty one.
std::string shelved(const std::vector<std::string>& places) {
    std::string shelf;
    for (const auto& place : places) {
        shelf += (shelf.empty() ? "" : ",") + (R"({"place":)" + place) + R"(,"rule":)" +
                 std::string(documents::loadSound) + "}";
    }
    return rulesOf(std::string(documents::loadSound) + "," + std::string(documents::loadSound))
        .insert(1, R"("shelf":[)" + shelf + "],");
}

TEST(PluginData, ReadsAnyPlaceInTheListAndInOrder) {
    EXPECT_EQ(read(shelved({"0", "0", "1", "2", "2"})).shelf.size(), 5U);
}

TEST(PluginData, APlaceOutsideOfTheListFailsTheDocument) {
    EXPECT_EQ(mostUsefulErrorOf(shelved({"0", "3"})),
              "shelf[1].place: expected a place from 0 to 2, found 3");
    EXPECT_EQ(mostUsefulErrorOf(shelved({"4294967295"})),
              "shelf[0].place: expected a place from 0 to 2, found 4294967295");
    EXPECT_EQ(mostUsefulErrorOf(shelved({"-1"})),
              "shelf[0].place: expected a whole number from 0 to 4294967295, found -1");
    EXPECT_EQ(mostUsefulErrorOf(shelved({"4294967296"})),
              "shelf[0].place: expected a whole number from 0 to 4294967295, found 4294967296");
}

TEST(PluginData, APlaceBeforeThatInFrontFailsTheDocument) {
    EXPECT_EQ(mostUsefulErrorOf(shelved({"1", "0"})),
              "shelf[1].place: expected a place from 1 to 2, found 0");
}

TEST(PluginData, AMalformedRuleOnTheShelfFailsTheDocument) {
    EXPECT_EQ(mostUsefulErrorOf(R"({"rules":[],"shelf":[{"place":0,"rule":{}}]})"),
              R"(shelf[0].rule: missing key "output")");
    EXPECT_EQ(mostUsefulErrorOf(R"({"rules":[],"shelf":[{"rule":{}}]})"), R"(shelf[0]: missing key "place")");
    EXPECT_EQ(mostUsefulErrorOf(R"({"rules":[],"shelf":{}})"), "shelf: expected an array, found an object");
}

TEST(PluginData, DiffersByWhatIsSwitchedOff) {
    const std::hash<PluginData> hash;
    const PluginData without{documents::dataWithShelf().rules};
    EXPECT_NE(documents::dataWithShelf(), without);
    EXPECT_NE(hash(documents::dataWithShelf()), hash(without));
    EXPECT_EQ(hash(documents::dataWithShelf()), hash(read(documents::documentWithShelf())));
}

}  // namespace
}  // namespace quillo
