// SPDX-License-Identifier: GPL-3.0-or-later
// The state, by the interface itself and through lilv, as hosts keep it in their projects.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string_view>

#include "hosts/lv2/LV2TestHost.hpp"
#include "persistence/PluginData.hpp"
#include "support/TemporaryFolder.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using Messages = std::vector<ScriptMessage>;

Bytes bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

Bytes documentOf(std::vector<Rule> rules) {
    return PluginData{std::move(rules)}.write();
}

std::vector<std::filesystem::path> presets() {
    std::vector<std::filesystem::path> paths;
    for (const auto& entry : std::filesystem::directory_iterator(QUILLO_PRESETS)) {
        if (entry.path().extension() == ".json") {
            paths.push_back(entry.path());
        }
    }
    return paths;
}

Bytes contentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// What hosts keep of an instance in a project.
using SavedState = std::unique_ptr<LilvState, decltype([](LilvState* state) { ::lilv_state_free(state); })>;

SavedState stateOf(LV2TestHost& host) {
    return SavedState(::lilv_state_new_from_instance(
        host.world().plugin(lv2Plain), host.instance(), &lv2Map(), nullptr, nullptr, nullptr, nullptr,
        nullptr, nullptr, LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE, nullptr));
}

/// As Turtle in a string.
std::string projectOf(LV2TestHost& host) {
    auto* text = ::lilv_state_to_string(host.world().get(), &lv2Map(), &lv2Unmap(), stateOf(host).get(),
                                        "urn:test:state", nullptr);
    std::string project(text);
    ::lilv_free(text);
    return project;
}

void restoreFrom(const SavedState& state, LV2TestHost& host) {
    ASSERT_NE(state, nullptr);
    EXPECT_EQ(::lilv_state_get_num_properties(state.get()), 1U);
    ::lilv_state_restore(state.get(), host.instance(), nullptr, nullptr, 0, nullptr);
}

void restoreFrom(const std::string& project, LV2TestHost& host) {
    restoreFrom(SavedState(::lilv_state_new_from_string(host.world().get(), &lv2Map(), project.c_str())),
                host);
}

/// Through a file, as hosts write and read it.
void restoreThroughAFile(LV2TestHost& from, LV2TestHost& to) {
    const TemporaryFolder folder;
    ASSERT_EQ(::lilv_state_save(from.world().get(), &lv2Map(), &lv2Unmap(), stateOf(from).get(), nullptr,
                                folder.path().c_str(), "state.ttl"),
              0);
    restoreFrom(SavedState(::lilv_state_new_from_file(to.world().get(), &lv2Map(), nullptr,
                                                      (folder / "state.ttl").c_str())),
                to);
}

/// Every character of ASCII, and what else a reader of Turtle might stumble over.
std::vector<std::string> awkwardTexts() {
    std::vector<std::string> texts{R"(""")",
                                   "'''",
                                   "^^<urn:x>",
                                   "@en",
                                   R"(\u0041)",
                                   "\r\n",
                                   "\u00a0",
                                   "\u0085",
                                   "\u2028",
                                   "\ufeff",
                                   "\u202e",
                                   "\ufffd",
                                   "\u00e9",
                                   "\u266f\u266d",
                                   "\u65e5\u672c",
                                   "\U0001f3b9",
                                   std::string(500, '"'),
                                   std::string(500, '\\')};
    for (int character = 0; character < 128; ++character) {
        texts.emplace_back(1, static_cast<char>(character));
    }
    return texts;
}

/// Rules with the text as their name, at its start, in its middle, at its end, and between what Turtle
/// escapes.
std::vector<Rule> rulesCalled(const std::string& text) {
    std::vector<Rule> rules;
    for (const auto& name : {text, text + "end", "in " + text + " it", "start" + text, '"' + text + '/',
                             '/' + text + '"', '\\' + text + '\\'}) {
        rules.push_back(rule(onMIDIStart(), send(noteOn(0, 61, 5)), name));
    }
    return rules;
}

class LV2State : public testing::Test {
protected:
    [[nodiscard]] std::optional<std::string> alert() {
        auto& unit = host.unit();
        unit.drain();
        return unit.model()->alertErrorMessage();
    }

    LV2TestHost host;
    const Bytes swap = documentOf({rule(onNoteOn(any, any, PassThroughV2::EatMatching),
                                        send(noteOn(0, 61, 5), 10), "swap \"é\" \\ \n")});
};

TEST_F(LV2State, OfEachPresetIsTheFileByteForByte) {
    ASSERT_GE(presets().size(), 5U);
    for (const auto& preset : presets()) {
        const auto document = contentOf(preset);
        ASSERT_EQ(host.load(document), LV2_STATE_SUCCESS) << preset;
        EXPECT_EQ(host.save(), document) << preset;
    }
}

TEST_F(LV2State, PassesThroughAProjectByteForByte) {
    for (const auto& preset : presets()) {
        ASSERT_EQ(host.load(contentOf(preset)), LV2_STATE_SUCCESS);
        LV2TestHost other;
        restoreFrom(projectOf(host), other);
        EXPECT_EQ(other.save(), host.save()) << preset;
    }
    ASSERT_EQ(host.load(swap), LV2_STATE_SUCCESS);
    LV2TestHost other;
    restoreFrom(projectOf(host), other);
    EXPECT_EQ(other.save(), swap);
}

TEST_F(LV2State, KeepsWhatIsSwitchedOffThroughAProject) {
    const auto off = rule(onNoteOn(), send(noteOn(0, 61, 5)), "off");
    const auto document = PluginData{{off}, {{0, off}, {1, off}}}.write();
    ASSERT_EQ(host.load(document), LV2_STATE_SUCCESS);
    LV2TestHost other;
    restoreFrom(projectOf(host), other);
    EXPECT_EQ(other.save(), document);
}

TEST_F(LV2State, SurvivesAProjectWhateverARuleIsCalled) {
    LV2TestHost other;
    for (const auto& text : awkwardTexts()) {
        const auto document = documentOf(rulesCalled(text));
        ASSERT_EQ(host.load(document), LV2_STATE_SUCCESS);
        restoreThroughAFile(host, other);
        ASSERT_EQ(other.save(), document) << testing::PrintToString(text);
    }
}

/// As the plug-in saved it before it saved chunks.
TEST_F(LV2State, OfAnOlderProjectIsAString) {
    ASSERT_EQ(host.load(swap), LV2_STATE_SUCCESS);
    restoreFrom(R"(
        @prefix lv2: <http://lv2plug.in/ns/lv2core#> .
        @prefix pset: <http://lv2plug.in/ns/ext/presets#> .
        @prefix state: <http://lv2plug.in/ns/ext/state#> .
        <urn:test:state> a pset:Preset ; lv2:appliesTo <urn:midi-quillo:lv2> ;
            state:state [ <urn:midi-quillo:lv2#midi-quillo-state> """{"rules":[]}""" ] .)",
                host);
    EXPECT_EQ(host.save(), documentOf({}));
    EXPECT_EQ(alert(), std::nullopt);
}

TEST_F(LV2State, OfAFreshPluginIsAnEmptyList) {
    EXPECT_EQ(host.save(), documentOf({}));
}

TEST_F(LV2State, OfAStringWithoutAZeroIsRestoredToo) {
    EXPECT_EQ(host.restore(swap, lv2Id(LV2_ATOM__String)), LV2_STATE_SUCCESS);
    EXPECT_EQ(host.save(), swap);
}

TEST_F(LV2State, OfAStringEndsBeforeItsZero) {
    auto string = swap;
    string.push_back(0);
    EXPECT_EQ(host.restore(string, lv2Id(LV2_ATOM__String)), LV2_STATE_SUCCESS);
    EXPECT_EQ(host.save(), swap);
}

TEST_F(LV2State, OfAMegabyteIsSavedAsItWasLoaded) {
    const auto document = documentOf(std::vector<Rule>(
        4, rule(onNoteOn(), send(systemExclusive(Bytes(1U << 17U, 100))), std::string(1000, 'n'))));
    ASSERT_GT(document.size(), 1U << 20U);
    ASSERT_EQ(host.load(document), LV2_STATE_SUCCESS);
    EXPECT_EQ(host.save(), document);
    LV2TestHost other;
    restoreThroughAFile(host, other);
    EXPECT_EQ(other.save(), document);
}

TEST_F(LV2State, ThatIsEmptyOrDamagedIsRefusedAndLeavesTheRules) {
    ASSERT_EQ(host.load(swap), LV2_STATE_SUCCESS);
    for (const auto* damaged :
         {"", " ", "{", "[1]", "null", R"({"rules":[{}]})", R"({"rules":[]} x)", "\xff\xfe"}) {
        EXPECT_EQ(host.load(bytesOf(damaged)), LV2_STATE_ERR_UNKNOWN) << damaged;
        EXPECT_EQ(host.save(), swap);
    }
    for (const auto* type : {LV2_ATOM__Chunk, LV2_ATOM__String}) {
        EXPECT_EQ(host.restore({}, lv2Id(type)), LV2_STATE_ERR_UNKNOWN);
        EXPECT_EQ(host.restore(Bytes(3, 0), lv2Id(type)), LV2_STATE_ERR_UNKNOWN);
    }
    EXPECT_EQ(host.save(), swap);
    ASSERT_TRUE(alert());
    EXPECT_NE(alert()->find("The saved rules cannot be restored"), std::string::npos);
}

TEST_F(LV2State, OfRulesThatCannotBeWrittenIsNotSaved) {
    host.unit().onRulesChanged({rule(onLoad(), send(noteOn(1, 61, 5)), "\xFF")});
    const auto store = [](LV2_State_Handle, std::uint32_t, const void*, std::size_t, std::uint32_t,
                          std::uint32_t) {
        ADD_FAILURE() << "something was stored";
        return LV2_STATE_SUCCESS;
    };
    EXPECT_EQ(host.state().save(host.handle(), store, nullptr, 0, nullptr), LV2_STATE_ERR_UNKNOWN);
    ASSERT_TRUE(alert());
    EXPECT_NE(alert()->find("The rules cannot be saved with the project"), std::string::npos);
}

TEST_F(LV2State, OfAMegabyteOfNoiseIsRefused) {
    ASSERT_EQ(host.load(swap), LV2_STATE_SUCCESS);
    std::mt19937 generator(1);
    Bytes noise(1U << 20U);
    for (auto& byte : noise) {
        byte = static_cast<std::uint8_t>(generator());
    }
    EXPECT_EQ(host.load(noise), LV2_STATE_ERR_UNKNOWN);
    EXPECT_EQ(host.save(), swap);
}

TEST_F(LV2State, OfAnotherTypeIsRefusedAndTheUserIsTold) {
    ASSERT_EQ(host.load(swap), LV2_STATE_SUCCESS);
    for (const auto* type : {LV2_ATOM__Bool, LV2_ATOM__Int, LV2_ATOM__Path}) {
        EXPECT_EQ(host.restore(documentOf({}), lv2Id(type)), LV2_STATE_ERR_BAD_TYPE);
    }
    EXPECT_EQ(host.save(), swap);
    EXPECT_EQ(alert(), "The saved rules cannot be restored: the host hands them out in another form than "
                       "they were saved in.\n\n(3 times)");
}

TEST_F(LV2State, OfAHostThatHasNoneLeavesTheRulesInSilence) {
    ASSERT_EQ(host.load(swap), LV2_STATE_SUCCESS);
    const auto nothing = [](LV2_State_Handle, std::uint32_t, std::size_t*, std::uint32_t*,
                            std::uint32_t*) -> const void* { return nullptr; };
    EXPECT_EQ(host.state().restore(host.handle(), nothing, nullptr, 0, nullptr), LV2_STATE_ERR_NO_PROPERTY);
    EXPECT_EQ(host.save(), swap);
    EXPECT_EQ(alert(), std::nullopt);
}

TEST_F(LV2State, ThatTheHostDoesNotTakeIsNotSaved) {
    const auto full = [](LV2_State_Handle, std::uint32_t, const void*, std::size_t, std::uint32_t,
                         std::uint32_t) { return LV2_STATE_ERR_NO_SPACE; };
    EXPECT_EQ(host.state().save(host.handle(), full, nullptr, 0, nullptr), LV2_STATE_ERR_NO_SPACE);
    EXPECT_EQ(host.state().save(host.handle(), nullptr, nullptr, 0, nullptr), LV2_STATE_ERR_UNKNOWN);
    EXPECT_EQ(host.state().restore(host.handle(), nullptr, nullptr, 0, nullptr), LV2_STATE_ERR_UNKNOWN);
    EXPECT_EQ(host.state().save(nullptr, full, nullptr, 0, nullptr), LV2_STATE_ERR_UNKNOWN);
}

TEST_F(LV2State, ThatAHostCannotHandOutIsRefused) {
    const auto throws = [](LV2_State_Handle, std::uint32_t, std::size_t*, std::uint32_t*,
                           std::uint32_t*) -> const void* { throw std::bad_alloc(); };
    EXPECT_EQ(host.state().restore(host.handle(), throws, nullptr, 0, nullptr), LV2_STATE_ERR_UNKNOWN);
}

TEST_F(LV2State, ThatWasRestoredBeforeActivationAndTwiceIsTheSecond) {
    ASSERT_EQ(host.load(documentOf({rule(onLoad(), send(controlChange(0, 7, 1)))})), LV2_STATE_SUCCESS);
    ASSERT_EQ(host.load(swap), LV2_STATE_SUCCESS);
    host.activate();
    host.run(1024, Bytes{0x90, 60, 1});
    EXPECT_EQ(host.take(), (Messages{{480, {0x90, 61, 5}}}));
}

TEST_F(LV2State, ThatIsRestoredWhileItPlaysHoldsFromTheNextBlock) {
    host.activate();
    host.run(64, Bytes{0x90, 60, 1});
    ASSERT_EQ(host.load(swap), LV2_STATE_SUCCESS);
    host.run(1024, Bytes{0x90, 60, 1});
    EXPECT_EQ(host.take(), (Messages{{0, {0x90, 60, 1}}, {64 + 480, {0x90, 61, 5}}}));
}

}  // namespace
}  // namespace quillo
