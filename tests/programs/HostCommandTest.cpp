// SPDX-License-Identifier: GPL-3.0-or-later
#include "programs/Commands.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

#include "support/Vandal.hpp"

namespace quillo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::StartsWith;

/// What came of a script.
struct Played {
    int status = 0;
    std::vector<std::string> lines;
    std::string err;
};

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        lines.push_back(line);
    }
    return lines;
}

Played playText(const std::string& script) {
    std::istringstream in(script);
    std::ostringstream out;
    std::ostringstream err;
    const int status = runHostCommand(in, out, err);
    return {status, linesOf(out.str()), err.str()};
}

Played play(const std::vector<std::string>& actions) {
    std::string script;
    for (const auto& action : actions) {
        script += action + "\n";
    }
    return playText(script);
}

/// The answers to a script that plays to its end.
std::vector<std::string> answers(const std::vector<std::string>& actions) {
    const auto played = play(actions);
    EXPECT_EQ(played.status, 0) << played.err;
    EXPECT_EQ(played.err, "");
    return played.lines;
}

std::string install(const std::vector<std::string>& rules) {
    std::string list;
    for (const auto& rule : rules) {
        list += (list.empty() ? "" : ",") + rule;
    }
    return R"({"do":"install","rules":[)" + list + "]}";
}

std::string ruleText(const std::string& message, int delayMs, const std::string& trigger) {
    return R"({"output":{"message":)" + message + R"(,"delay":{"ms":)" + std::to_string(delayMs) +
           R"(}},"trigger":)" + trigger + R"(,"name":"in/out"})";
}

/// A control change 7 on channel value 0.
std::string controller(int value) {
    return R"({"Protocol":{"_0":{"JustStatus":{"_0":176}},"_1":{"Value":{"_0":7}},"_2":{"Value":{"_0":)" +
           std::to_string(value) + "}}}}";
}

const std::string bankAndProgram =
    R"({"ProgramChange":{"_0":{"Value":{"_0":1}},"_1":2,"_2":{"Value":{"_0":3}}}})";
const std::string fromTrigger = R"({"Protocol":{"_0":{"JustStatus":{"_0":176}},"_1":{"Value":{"_0":7}},)"
                                R"("_2":{"RespectiveTriggerByte":{}}}})";
const std::string loadTrigger = R"({"OnLoad":{}})";
const std::string noteTrigger =
    R"({"MessageBased":{"_0":{"variants":{"VoiceCategory":{"_0":{)"
    R"("variants":{"NoteOn":{"_0":{"AnyValue":{}}}},"channel":{"AnyValue":{}}}}},)"
    R"("passTrough":{"PassThrough":{}}}}})";

std::string hostTrigger(const std::string& change) {
    return R"({"HostTransport":{"_0":{"variants":{")" + change +
           R"(":{}},"passThrough":{"PassThrough":{}}}}})";
}

std::string render(const std::string& sampleTime, int frames, const std::string& events = "") {
    return R"({"do":"render","sampleTime":)" + sampleTime + R"(,"frames":)" + std::to_string(frames) +
           R"(,"events":[)" + events + "]}";
}

const std::string noteAt10 = R"({"time":10,"bytes":[144,60,100]})";

TEST(HostCommand, AnswersNothingToAnEmptyScript) {
    EXPECT_THAT(answers({}), IsEmpty());
}

TEST(HostCommand, SkipsBlankLinesAndTakesAnyLineEnd) {
    const auto played = playText("\n  \t \r\n{\"do\":\"queue\"}\r\n\r\n{\"do\":\"queue\"}");
    EXPECT_EQ(played.status, 0);
    EXPECT_THAT(played.lines, ElementsAre(R"({"delayed":0})", R"({"delayed":0})"));
}

TEST(HostCommand, SavesTheRulesOfANewUnit) {
    EXPECT_THAT(answers({R"({"do":"save"})"}), ElementsAre(R"({"state":"{\"rules\":[]}"})"));
}

TEST(HostCommand, RestoresAndSavesADocument) {
    EXPECT_THAT(
        answers({R"({"do":"restore","state":"[ )"
                 R"({\"output\":{\"message\":{\"SystemExclusive\":{\"_0\":[1.0]}},\"delay\":{\"ms\":0}},)"
                 R"(\"trigger\":{\"OnLoad\":{}}} ]"})",
                 R"({"do":"save"})"}),
        ElementsAre(R"({"restored":1})",
                    R"({"state":"{\"rules\":[{\"output\":{\"message\":{\"SystemExclusive\":{\"_0\":[1]}},)"
                    R"(\"delay\":{\"ms\":0}},\"trigger\":{\"OnLoad\":{}},\"name\":\"Message #1\"}]}"})"));
}

TEST(HostCommand, SavesASlashWithItsEscape) {
    EXPECT_THAT(
        answers({install({ruleText(bankAndProgram, 0, loadTrigger)}), R"({"do":"save"})"}),
        ElementsAre(R"({"installed":1})",
                    R"({"state":"{\"rules\":[{\"output\":{\"message\":{\"ProgramChange\":)"
                    R"({\"_0\":{\"Value\":{\"_0\":1}},\"_1\":2,\"_2\":{\"Value\":{\"_0\":3}}}},)"
                    R"(\"delay\":{\"ms\":0}},\"trigger\":{\"OnLoad\":{}},\"name\":\"in\\/out\"}]}"})"));
}

TEST(HostCommand, RestoresBytesThatAreNoText) {
    EXPECT_THAT(answers({install({ruleText(controller(1), 0, loadTrigger)}),
                         R"({"do":"restore","base64":"/w=="})", R"({"do":"restore","base64":"W10="})"}),
                ElementsAre(R"({"installed":1})", R"({"restored":0})", R"({"restored":0})"));
}

TEST(HostCommand, RestoringADamagedDocumentEmptiesTheRules) {
    EXPECT_THAT(answers({install({ruleText(controller(1), 0, loadTrigger)}),
                         R"({"do":"restore","state":"{\"rules\":["})", R"({"do":"save"})"}),
                ElementsAre(R"({"installed":1})", R"({"restored":0})", R"({"state":"{\"rules\":[]}"})"));
}

TEST(HostCommand, RestoringNoDictionaryKeepsTheRules) {
    EXPECT_THAT(
        answers({install({ruleText(controller(1), 0, loadTrigger)}), R"({"do":"restore","state":null})"}),
        ElementsAre(R"({"installed":1})", R"({"restored":1})"));
}

TEST(HostCommand, ADictionaryWithoutTheStateIsFatal) {
    for (const auto* dictionary :
         {"{}", R"({"other":"[]"})", R"({"midi-quillo-state":"[]"})", R"({"midi-quillo-state":5})",
          R"({"midi-quillo-state":null})", R"({"midi-quillo-state":true})", R"({"midi-quillo-state":{}})",
          R"({"midi-quillo-state":["[]"]})"}) {
        const auto played =
            play({R"({"do":"queue"})", R"({"do":"restore","dictionary":)" + std::string(dictionary) + "}",
                  R"({"do":"queue"})"});
        EXPECT_EQ(played.status, 70);
        EXPECT_THAT(played.lines,
                    ElementsAre(R"({"delayed":0})",
                                MatchesRegex(R"re(\{"fatal":"Fatal error: .* \(.*\.cpp:[0-9]+\)"\})re")))
            << dictionary;
        EXPECT_EQ(played.err, "");
    }
}

TEST(HostCommand, AnOldPitchAbove255IsFatal) {
    const auto played =
        play({R"({"do":"restore","state":"[{\"output\":{\"message\":{\"Prime\":{\"_0\":{\"PitchWheel\":)"
              R"({\"_0\":{\"value\":0},\"_1\":{\"value\":256}}}}},\"delay\":{\"ms\":0}},)"
              R"(\"trigger\":{\"OnLoad\":{}}}]"})"});
    EXPECT_EQ(played.status, 70);
    EXPECT_THAT(played.lines, ElementsAre(StartsWith(R"({"fatal":"Fatal error: pitch 256)")));
}

TEST(HostCommand, CreatesANewUnitAndForgetsTheHostsBlocks) {
    EXPECT_THAT(answers({install({ruleText(controller(1), 0, loadTrigger)}),
                         R"({"do":"send","output":)" + controller(2) + "}",
                         R"({"do":"transport","flags":2,"position":0})",
                         R"({"do":"output","failAfter":0,"status":-1})", R"({"do":"create"})",
                         R"({"do":"save"})", render("0", 64, noteAt10)}),
                ElementsAre(R"({"installed":1})", R"({"queued":1})", R"({"transport":true})",
                            R"({"output":true})", R"({"created":true})", R"({"state":"{\"rules\":[]}"})",
                            R"({"in":"[10] 90 3c 64"})",
                            R"({"midi":{"time":10,"cable":0,"bytes":[144,60,100]}})",
                            R"({"out":"[10] 90 3c 64"})", R"({"status":0})"));
}

TEST(HostCommand, CreateOffersAWithdrawnOutputAgain) {
    EXPECT_THAT(
        answers({R"({"do":"output","present":false})", R"({"do":"create"})", render("0", 64, noteAt10)}),
        ElementsAre(R"({"output":false})", R"({"created":true})", R"({"in":"[10] 90 3c 64"})",
                    R"({"midi":{"time":10,"cable":0,"bytes":[144,60,100]}})", R"({"out":"[10] 90 3c 64"})",
                    R"({"status":0})"));
}

TEST(HostCommand, AllocatesAndDeallocates) {
    EXPECT_THAT(answers({R"({"do":"allocate"})", R"({"do":"deallocate"})",
                         R"({"do":"allocate","sampleRate":48000,"inputChannels":8,"outputChannels":8})"}),
                ElementsAre(R"({"allocated":true})", R"({"deallocated":true})", R"({"allocated":true})"));
}

TEST(HostCommand, AnswersTheErrorOfAnAllocation) {
    EXPECT_THAT(answers({R"({"do":"allocate","inputChannels":1})", R"({"do":"allocate","outputChannels":1})",
                         R"({"do":"allocate"})"}),
                ElementsAre(R"({"error":-10875,"domain":"NSOSStatusErrorDomain"})",
                            R"({"error":-10875,"domain":"NSOSStatusErrorDomain"})", R"({"allocated":true})"));
}

TEST(HostCommand, AnswersTheStatusOfABusThatRejectsAFormat) {
    EXPECT_THAT(answers({R"({"do":"allocate","inputChannels":9,"outputChannels":9})",
                         R"({"do":"allocate","outputChannels":0})"}),
                ElementsAre(R"({"error":-10868,"domain":"NSOSStatusErrorDomain"})",
                            R"({"error":-10868,"domain":"NSOSStatusErrorDomain"})"));
}

TEST(HostCommand, AnInvalidSampleRateIsFatal) {
    for (const auto* rate : {"-1", "18446744073709551616", "1e300"}) {
        const auto played = play({R"({"do":"allocate","sampleRate":)" + std::string(rate) + "}"});
        EXPECT_EQ(played.status, 70);
        EXPECT_THAT(played.lines, ElementsAre(StartsWith(R"({"fatal":"Fatal error: the sample rate)")))
            << rate;
    }
    EXPECT_THAT(answers({R"({"do":"allocate","sampleRate":-0.5})"}), ElementsAre(R"({"allocated":true})"));
}

TEST(HostCommand, InstallsNothingOfRulesThatCannotBeCompiled) {
    const auto played = play({install({ruleText(controller(1), -1, loadTrigger)})});
    EXPECT_EQ(played.status, 70);
    EXPECT_THAT(played.lines,
                ElementsAre(StartsWith(R"({"fatal":"Fatal error: a delay is negative: -1 ms)")));
}

TEST(HostCommand, SendsAtTheStartOfTheNextCycle) {
    EXPECT_THAT(
        answers({R"({"do":"send","output":)" + controller(1) + "}",
                 R"({"do":"send","output":)" + bankAndProgram + "}", render("100", 64), render("164", 64)}),
        ElementsAre(R"({"queued":1})", R"({"queued":3})",
                    R"({"midi":{"time":100,"cable":0,"bytes":[176,7,1]}})", R"({"out":"[100] b0 07 01"})",
                    R"({"midi":{"time":100,"cable":0,"bytes":[177,0,2]}})", R"({"out":"[100] b1 00 02"})",
                    R"({"midi":{"time":100,"cable":0,"bytes":[193,3]}})", R"({"out":"[100] c1 03"})",
                    R"({"status":0})", R"({"status":0})"));
}

TEST(HostCommand, SendingWhatATriggerWouldFillInIsFatal) {
    const auto played = play({R"({"do":"send","output":)" + fromTrigger + "}"});
    EXPECT_EQ(played.status, 70);
    EXPECT_THAT(played.lines, ElementsAre(StartsWith(R"({"fatal":"Fatal error: )")));
}

TEST(HostCommand, WritesTheEventsOfACycleInTheOrderInWhichTheyHappen) {
    EXPECT_THAT(
        answers({install({ruleText(controller(1), 0, loadTrigger),
                          ruleText(controller(2), 0, hostTrigger("Start")),
                          ruleText(fromTrigger, 0, noteTrigger)}),
                 R"({"do":"send","output":)" + controller(3) + "}",
                 R"({"do":"transport","flags":2,"position":0.0})",
                 render("5", 64, noteAt10 + R"(,{"time":20,"bytes":[250]})")}),
        ElementsAre(R"({"installed":3})", R"({"queued":1})", R"({"transport":true})",
                    R"({"midi":{"time":5,"cable":0,"bytes":[176,7,1]}})", R"({"out":"[5] b0 07 01"})",
                    R"({"midi":{"time":5,"cable":0,"bytes":[176,7,3]}})", R"({"out":"[5] b0 07 03"})",
                    R"({"in":"[5] AU Host Start"})", R"({"midi":{"time":5,"cable":0,"bytes":[176,7,2]}})",
                    R"({"out":"[5] b0 07 02"})", R"({"in":"[10] 90 3c 64"})",
                    R"({"midi":{"time":10,"cable":0,"bytes":[176,7,100]}})", R"({"out":"[10] b0 07 64"})",
                    R"({"midi":{"time":10,"cable":0,"bytes":[144,60,100]}})", R"({"out":"[10] 90 3c 64"})",
                    R"({"in":"[20] fa"})", R"({"midi":{"time":20,"cable":0,"bytes":[250]}})",
                    R"({"out":"[20] fa"})", R"({"status":0})"));
}

TEST(HostCommand, CountsDelayedOutputsUntilTheyAreDue) {
    EXPECT_THAT(answers({R"({"do":"allocate","sampleRate":48000})",
                         install({ruleText(controller(1), 10, loadTrigger)}), render("0", 480),
                         R"({"do":"queue"})", render("480", 1), R"({"do":"queue"})"}),
                ElementsAre(R"({"allocated":true})", R"({"installed":1})", R"({"status":0})",
                            R"({"delayed":1})", R"({"midi":{"time":480,"cable":0,"bytes":[176,7,1]}})",
                            R"({"out":"[480] b0 07 01"})", R"({"status":0})", R"({"delayed":0})"));
}

TEST(HostCommand, KeepsTheFractionOfASampleTimeForTheUnit) {
    EXPECT_THAT(answers({R"({"do":"send","output":)" + controller(1) + "}", render("-0.75", 64),
                         R"({"do":"send","output":)" + controller(1) + "}", render("-1.5", 64)}),
                ElementsAre(R"({"queued":1})", R"({"midi":{"time":0,"cable":0,"bytes":[176,7,1]}})",
                            R"({"out":"[0] b0 07 01"})", R"({"status":0})", R"({"queued":1})",
                            R"({"midi":{"time":-1,"cable":0,"bytes":[176,7,1]}})",
                            R"({"out":"[-1] b0 07 01"})", R"({"status":0})"));
}

TEST(HostCommand, ASampleTimeBeyond64BitsIsFatal) {
    for (const auto* time : {"1e300", "9223372036854775808", "-9223372036854777856"}) {
        const auto played = play({render(time, 64), R"({"do":"queue"})"});
        EXPECT_EQ(played.status, 70);
        EXPECT_THAT(played.lines,
                    ElementsAre(StartsWith(R"({"fatal":"Fatal error: the cycle's sample time)")))
            << time;
    }
}

TEST(HostCommand, WritesTheEventsBeforeAFatalErrorOfTheSameCycle) {
    const auto played = play({install({ruleText(controller(1), 1, noteTrigger)}),
                              render("0", 64, R"({"time":9223372036854775807,"bytes":[144,60,100]})")});
    EXPECT_EQ(played.status, 70);
    EXPECT_THAT(played.lines, ElementsAre(R"({"installed":1})", R"({"in":"[9223372036854775807] 90 3c 64"})",
                                          StartsWith(R"({"fatal":"Fatal error: )")));
}

TEST(HostCommand, ShowsTheUnitOnlyMIDIEvents) {
    EXPECT_THAT(answers({render("0", 64,
                                R"({"time":1,"type":9,"bytes":[240,1,2,3,247]},{"time":2,"type":1},)"
                                R"({"time":3,"type":2,"bytes":[1]},{"time":-4,"bytes":[192,5]})")}),
                ElementsAre(R"({"in":"[-4] c0 05"})", R"({"midi":{"time":-4,"cable":0,"bytes":[192,5]}})",
                            R"({"out":"[-4] c0 05"})", R"({"status":0})"));
}

TEST(HostCommand, TakesALengthOfItsOwnForAnEvent) {
    EXPECT_THAT(
        answers({render(
            "0", 64, R"({"time":7,"bytes":[144,60,100],"length":0},{"time":8,"bytes":[144],"length":3})")}),
        ElementsAre(R"({"in":"[7] "})", R"({"midi":{"time":7,"cable":0,"bytes":[]}})", R"({"out":"[7] "})",
                    R"({"in":"[8] 90 00 00"})", R"({"midi":{"time":8,"cable":0,"bytes":[144,0,0]}})",
                    R"({"out":"[8] 90 00 00"})", R"({"status":0})"));
}

TEST(HostCommand, FollowsTheReportedTransport) {
    EXPECT_THAT(
        answers({render("0", 64), R"({"do":"transport","flags":0,"position":4096.0})", render("64", 64),
                 R"({"do":"transport","flags":2,"position":4096.0})", render("128", 64), render("192", 64),
                 R"({"do":"transport","flags":0,"position":4096.0})", render("256", 64),
                 R"({"do":"transport","present":false})", render("320", 64)}),
        ElementsAre(R"({"status":0})", R"({"transport":true})", R"({"status":0})", R"({"transport":true})",
                    R"({"in":"[128] AU Host Continue"})", R"({"status":0})", R"({"status":0})",
                    R"({"transport":true})", R"({"in":"[256] AU Host Stop"})", R"({"status":0})",
                    R"({"transport":false})", R"({"status":0})"));
}

TEST(HostCommand, WithdrawsTheOutputAndOffersItAgain) {
    EXPECT_THAT(answers({R"({"do":"output","present":false})", render("0", 64, noteAt10),
                         R"({"do":"output","present":true})", render("0", 64, noteAt10)}),
                ElementsAre(R"({"output":false})", R"({"in":"[10] 90 3c 64"})", R"({"status":0})",
                            R"({"output":true})", R"({"in":"[10] 90 3c 64"})",
                            R"({"midi":{"time":10,"cable":0,"bytes":[144,60,100]}})",
                            R"({"out":"[10] 90 3c 64"})", R"({"status":0})"));
}

TEST(HostCommand, RefusesOneMessageAfterThoseThatItAccepts) {
    const auto events = noteAt10 + R"(,{"time":11,"bytes":[192,5]},{"time":12,"bytes":[192,6]})";
    EXPECT_THAT(answers({R"({"do":"output","failAfter":1,"status":-10867})", render("0", 64, events),
                         render("64", 64, R"({"time":70,"bytes":[192,7]})")}),
                ElementsAre(R"({"output":true})", R"({"in":"[10] 90 3c 64"})",
                            R"({"midi":{"time":10,"cable":0,"bytes":[144,60,100]}})",
                            R"({"out":"[10] 90 3c 64"})", R"({"in":"[11] c0 05"})",
                            R"({"refused":{"time":11,"cable":0,"bytes":[192,5]}})", R"({"status":-10867})",
                            R"({"in":"[70] c0 07"})", R"({"midi":{"time":70,"cable":0,"bytes":[192,7]}})",
                            R"({"out":"[70] c0 07"})", R"({"status":0})"));
}

TEST(HostCommand, APlannedFailureOffersTheOutputAgain) {
    EXPECT_THAT(answers({R"({"do":"output","present":false})", R"({"do":"output","failAfter":0,"status":1})",
                         render("0", 64, noteAt10)}),
                ElementsAre(R"({"output":false})", R"({"output":true})", R"({"in":"[10] 90 3c 64"})",
                            R"({"refused":{"time":10,"cable":0,"bytes":[144,60,100]}})", R"({"status":1})"));
}

TEST(HostCommand, APlannedStatusOfZeroIsAnAcceptance) {
    EXPECT_THAT(answers({R"({"do":"output","failAfter":0,"status":0})", render("0", 64, noteAt10)}),
                ElementsAre(R"({"output":true})", R"({"in":"[10] 90 3c 64"})",
                            R"({"midi":{"time":10,"cable":0,"bytes":[144,60,100]}})",
                            R"({"out":"[10] 90 3c 64"})", R"({"status":0})"));
}

TEST(HostCommand, DescribesTheUnit) {
    constexpr auto bus = R"({"format":"float32","sampleRate":44100,"channels":2,"interleaved":false,)"
                         R"("maximumChannelCount":8})";
    EXPECT_THAT(answers({R"({"do":"describe"})"}),
                ElementsAre(R"({"midiOutputNames":["MIDIQuillo"],"inputBusses":[)" + std::string(bus) +
                            R"(],"outputBusses":[)" + bus + R"(],"parameters":[]})"));
}

TEST(HostCommand, DescribesTheFormatsThatWereSet) {
    const auto lines =
        answers({R"({"do":"allocate","sampleRate":44100.5,"inputChannels":1,"outputChannels":4})",
                 R"({"do":"describe"})"});
    EXPECT_EQ(
        lines.at(1),
        R"({"midiOutputNames":["MIDIQuillo"],"inputBusses":[{"format":"float32","sampleRate":44100.5,)"
        R"("channels":1,"interleaved":false,"maximumChannelCount":8}],"outputBusses":[{"format":"float32",)"
        R"("sampleRate":44100.5,"channels":4,"interleaved":false,"maximumChannelCount":8}],)"
        R"("parameters":[]})");
}

TEST(HostCommand, NamesTheViewSizesThatTheEditorCanHave) {
    EXPECT_THAT(answers({R"({"do":"views","sizes":[[150,300],[200,200],[0,0],[0,500],[199.5,200]]})",
                         R"({"do":"views","sizes":[]})"}),
                ElementsAre(R"({"supported":[1,2]})", R"({"supported":[]})"));
}

TEST(HostCommand, StopsAtALineThatIsNoActionAndKeepsTheAnswersBefore) {
    const auto played = play({R"({"do":"queue"})", "", R"({"do":"nothing"})", R"({"do":"queue"})"});
    EXPECT_EQ(played.status, 65);
    EXPECT_THAT(played.lines, ElementsAre(R"({"delayed":0})"));
    EXPECT_EQ(played.err, "line 3: do: there is no action \"nothing\"\n");
}

TEST(HostCommand, DoesNothingOfALineThatIsWrongAtItsEnd) {
    const auto played = play({render("0", 64, noteAt10 + R"(,{"time":0,"bytes":[1],"type":5})")});
    EXPECT_EQ(played.status, 65);
    EXPECT_THAT(played.lines, IsEmpty());
    EXPECT_EQ(played.err, "line 1: events[1].type: expected 1, 2, 8 or 9, found 5\n");
}

TEST(HostCommand, NamesTheColumnOfALineThatIsNotJSON) {
    EXPECT_EQ(play({R"({"do":"queue",})"}).err, "line 1: not JSON: column 15: unexpected '}'\n");
}

/// A script that breaks off: the stream fails when it is read beyond its text.
class BrokenBuffer : public std::stringbuf {
public:
    using std::stringbuf::stringbuf;

protected:
    int_type underflow() override {
        const auto next = std::stringbuf::underflow();
        if (next == traits_type::eof()) {
            throw std::runtime_error("the disk is gone");
        }
        return next;
    }
};

TEST(HostCommand, SaysWhereAScriptCannotBeReadOn) {
    BrokenBuffer buffer("{\"do\":\"queue\"}\n", std::ios::in);
    std::istream script(&buffer);
    std::ostringstream out;
    std::ostringstream err;
    EXPECT_EQ(runHostCommand(script, out, err), 66);
    EXPECT_EQ(out.str(), "{\"delayed\":0}\n");
    EXPECT_EQ(err.str(), "the script cannot be read beyond line 1\n");
}

/// Keeps what was written up to each flush.
class FlushCounter : public std::stringbuf {
public:
    std::vector<std::string> flushed;

protected:
    int sync() override {
        flushed.push_back(str());
        return 0;
    }
};

TEST(HostCommand, FlushesAtTheEndOfEachAction) {
    std::istringstream script(
        "{\"do\":\"queue\"}\n{\"do\":\"deallocate\"}\n{\"do\":\"restore\",\"dictionary\":{}}\n");
    FlushCounter counter;
    std::ostream out(&counter);
    std::ostringstream err;
    EXPECT_EQ(runHostCommand(script, out, err), 70);
    ASSERT_EQ(counter.flushed.size(), 3U);
    EXPECT_EQ(counter.flushed[0], "{\"delayed\":0}\n");
    EXPECT_EQ(counter.flushed[1], "{\"delayed\":0}\n{\"deallocated\":true}\n");
    EXPECT_EQ(counter.flushed[2], counter.str());
}

TEST(HostCommand, TakesLongLinesAndSurvivesDeepOnes) {
    const std::string longName(1'000'000, 'n');
    const auto played =
        play({R"({"do":"install","rules":[{"output":{"message":)" + controller(1) +
                  R"(,"delay":{"ms":0}},"trigger":{"OnLoad":{}},"name":")" + longName + "\"}]}",
              std::string(100'000, '[')});
    EXPECT_EQ(played.status, 65);
    EXPECT_THAT(played.lines, ElementsAre(R"({"installed":1})"));
    EXPECT_EQ(played.err, "line 2: nested deeper than 512 levels\n");
}

TEST(HostCommand, SurvivesEveryDamagedScript) {
    const std::string script =
        install({ruleText(controller(1), 10, loadTrigger), ruleText(fromTrigger, 0, noteTrigger)}) + "\n" +
        R"({"do":"transport","flags":2,"position":0.5})" + "\n" +
        R"({"do":"output","failAfter":2,"status":-1})" + "\n" +
        render("0", 512, noteAt10 + R"(,{"time":3,"type":9,"bytes":[240,247]})") + "\n" +
        R"({"do":"restore","base64":"W10="})" + "\n" + R"({"do":"describe"})" + "\n";
    for (unsigned seed = 0; seed < 1'500; ++seed) {
        auto damaged = script;
        test::Vandal(seed).damage(damaged);
        const auto played = playText(damaged);
        ASSERT_THAT(played.status, testing::AnyOf(0, 65, 70)) << damaged;
        ASSERT_EQ(played.status == 65, played.err.starts_with("line ")) << damaged;
        ASSERT_EQ(played.status == 70,
                  !played.lines.empty() && played.lines.back().starts_with(R"({"fatal":"Fatal error: )"))
            << damaged;
    }
}

}  // namespace
}  // namespace quillo
